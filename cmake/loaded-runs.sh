#!/usr/bin/env bash
# Runs the whole test suite RUNS times in a row while CPU burners keep every core busy, and prints each
# run's result and duration, then "RUNS runs, F failed". A test that waits a fixed time instead of waiting
# for what it expects fails here sooner or later. The output of each run is kept in BUILD/loaded-runs/.
# Usage: cmake/loaded-runs.sh BUILD [RUNS] [TEST_JOBS] [BURNERS]
# BURNERS (default: one per core) may be 0 when something else keeps the cores busy; each run's line ends
# with the load average at its end, so that the load is on record either way.
set -u
build=${1:-build}
runs=${2:-10}
jobs=${3:-$(nproc)}
burner_count=${4:-$(nproc)}
logs="$build/loaded-runs"
mkdir -p "$logs"

burners=()
stop_burners() {
    for pid in "${burners[@]}"; do kill "$pid" 2>/dev/null; done
    wait 2>/dev/null
}
trap stop_burners EXIT
trap 'exit 130' INT TERM
for ((i = 0; i < burner_count; i++)); do
    (while :; do :; done) &
    burners+=($!)
done
echo "loaded runs: $runs full test runs in $build, $burner_count CPU burners on $(nproc) cores, ctest -j $jobs"

failed=0
for ((run = 1; run <= runs; run++)); do
    log="$logs/run-$run.log"
    start=$(date +%s)
    if (cd "$build" && ctest --output-on-failure --timeout 900 -j "$jobs") >"$log" 2>&1; then
        result=passed
    else
        result=FAILED
        failed=$((failed + 1))
    fi
    seconds=$(($(date +%s) - start))
    summary=$(grep -E '^[0-9]+% tests passed' "$log" | tail -1)
    load=$(cut -d' ' -f1-3 /proc/loadavg)
    echo "run $run: $result in ${seconds} s (${summary:-no summary}; load average $load)"
    if [ "$result" = FAILED ]; then
        grep -E '^\s+[0-9]+ - .*\((Failed|Timeout|Not Run|Exception|SEGFAULT)' "$log" | sed 's/^/    /'
        grep -E '^\[  FAILED  \] [A-Za-z_]+\.' "$log" | sort -u | sed 's/^/    /'
    fi
done
echo "$runs runs, $failed failed"
[ "$failed" -eq 0 ]
