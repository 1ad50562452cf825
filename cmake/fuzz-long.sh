#!/usr/bin/env bash
# The long hostile-input pass: each driver of fuzz_tests.exe runs in a process of its own, JOBS at a time,
# with 1,000,000 inputs each, or, for a driver whose input costs more than 5 ms (a window, a process, typed
# keys), the inputs of about an hour (the table below). TAVUTIL_FUZZ_INPUTS, when set, is every driver's
# count. Most drivers share nothing (each has its own temporary folder, registry key or class); those that
# share the desktop, the messenger keys of HKEY_LOCAL_MACHINE or this program's sound scheme run one after
# another in a lane of their own beside the rest. Each driver's output is kept in BUILD/fuzz-long/; the end
# is one table of every driver: inputs, distinct outcomes, seconds, failures.
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
echo "fuzz-long: $(echo "$drivers" | wc -l) drivers, ${TAVUTIL_FUZZ_INPUTS:-1000000 (about an hour of inputs for slow ones)}" \
    "inputs each, $jobs at a time, TAVUTIL_FUZZ_SEED=$seed, output in $logs"

. "$here/fuzz-counts.sh"  # each driver's count: fuzz_count
# One group at a time each, beside the rest: the drivers of the desktop (foreground, keyboard, clipboard;
# the messenger drivers also hold the messenger keys), and those of this program's sound scheme.
lanes=(" Fuzz.CommandWords Fuzz.SendText Fuzz.CapiSendText Fuzz.Clipboard Fuzz.CapiClipboard Fuzz.Messengers Fuzz.CapiMessengers "
    " Fuzz.Sounds Fuzz.CapiSounds ")

export TAVUTIL_FUZZ_SEED=$seed TAVUTIL_FUZZ_LONG=1
run_driver() {
    local driver=$1 count
    count=$(fuzz_count "$driver")
    TAVUTIL_FUZZ_INPUTS=$count "$session" run "$build" "$exe" --gtest_color=no --gtest_filter="$driver" \
        >"$logs/$driver.log" 2>&1
    echo "fuzz-long: $driver ($count inputs) ended with status $?"
}
rest=()
for driver in $drivers; do
    in_lane=0
    for lane in "${lanes[@]}"; do [[ $lane == *" $driver "* ]] && in_lane=1; done
    [ "$in_lane" = 1 ] || rest+=("$driver")
done
for lane in "${lanes[@]}"; do  # each lane counts as one of the JOBS
    members=()
    for driver in $lane; do [[ $'\n'$drivers$'\n' == *$'\n'$driver$'\n'* ]] && members+=("$driver"); done
    [ ${#members[@]} -eq 0 ] || (for driver in "${members[@]}"; do run_driver "$driver"; done) &
done
for driver in "${rest[@]}"; do
    while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do wait -n; done
    run_driver "$driver" &
done
wait

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
