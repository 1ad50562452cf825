#!/usr/bin/env bash
# The long hostile-input pass: each driver of fuzz_tests.exe runs in a process of its own, JOBS at a time
# (the drivers share nothing: each has its own temporary folder or registry key), with
# TAVUTIL_FUZZ_INPUTS inputs each (default 1,000,000). Each driver's output is kept in BUILD/fuzz-long/;
# the end is one table of every driver: inputs, distinct outcomes, seconds, failures.
# TAVUTIL_FUZZ_SEED, TAVUTIL_FUZZ_FROM and TAVUTIL_FUZZ_UNTIL pass through: with them a pass cut short
# continues from the last "reached input" line of its logs.
# Usage: cmake/fuzz-long.sh BUILD [JOBS] [FILTER]   (FILTER: a gtest filter, default every driver)
set -u
build=${1:-build}
jobs=${2:-$(nproc)}
filter=${3:-Fuzz.*}
here=$(cd "$(dirname "$0")" && pwd)
session="$here/wine-session.sh"
exe="$build/bin/fuzz_tests.exe"
logs="$build/fuzz-long"
mkdir -p "$logs"
rm -f "$logs"/*.log

"$session" start "$build" || exit 1
trap '"$session" stop "$build"' EXIT

drivers=$("$session" run "$build" "$exe" --gtest_list_tests --gtest_filter="$filter" | tr -d '\r' |
    awk '/^[^ ]/ { suite = $1 } /^  / { print suite $1 }')
[ -n "$drivers" ] || { echo "fuzz-long: no drivers match $filter"; exit 1; }
seed=${TAVUTIL_FUZZ_SEED:-$(od -An -N6 -tu8 /dev/urandom | tr -d ' ')}
echo "fuzz-long: $(echo "$drivers" | wc -l) drivers, ${TAVUTIL_FUZZ_INPUTS:-1000000} inputs each," \
    "$jobs at a time, TAVUTIL_FUZZ_SEED=$seed, output in $logs"

export TAVUTIL_FUZZ_SEED=$seed TAVUTIL_FUZZ_LONG=1
echo "$drivers" | xargs -P "$jobs" -I{} sh -c \
    '"$0" run "$1" "$2" --gtest_color=no --gtest_filter={} > "$3/{}.log" 2>&1; echo "fuzz-long: {} ended with status $?"' \
    "$session" "$build" "$exe" "$logs"

printf '\n%-16s %10s %10s %9s %9s\n' driver inputs outcomes seconds failures
status=0
for driver in $drivers; do
    log="$logs/$driver.log"
    line=$(tr -d '\r' <"$log" | grep -E '^fuzz: [a-z-]+ +[0-9]+ inputs' | tail -1)
    if [ -z "$line" ]; then
        printf '%-16s %s\n' "$driver" "no result (see $log)"
        status=1
        continue
    fi
    echo "$line" | sed -E 's/^fuzz: ([a-z-]+) +([0-9]+) inputs, ([0-9]+) outcomes, ([0-9.]+) s, ([0-9]+) failures/\1 \2 \3 \4 \5/' |
        awk '{ printf "%-16s %10s %10s %9s %9s\n", $1, $2, $3, $4, $5 }'
    # A driver passed when its test did and it counted no failure ("[  PASSED  ] 0 tests" is a failure).
    grep -q '^\[  PASSED  \] 1 test' <(tr -d '\r' <"$log") || status=1
    [ "$(echo "$line" | sed -E 's/.*, ([0-9]+) failures$/\1/')" = 0 ] || status=1
done
[ "$status" -eq 0 ] && echo "fuzz-long: every driver passed" || echo "fuzz-long: FAILED (see $logs)"
exit "$status"
