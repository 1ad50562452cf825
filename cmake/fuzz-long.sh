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

# Inputs of about an hour for the drivers whose input costs more than 5 ms, from the rates measured with
# runs of 1,000 inputs (100 for a child process) on the development machine: two cores shared with other
# work, Release build. The hardened build is slower by about a third.
declare -A hour_inputs=(
    [Fuzz.ProcessNames]=200000        # 57 inputs/s: three snapshots of the processes of the session
    [Fuzz.CapiProcessNames]=150000    # 43 inputs/s
    [Fuzz.Processes]=5000             # 1.4 inputs/s: a child process started and ended
    [Fuzz.CapiProcesses]=4000         # 1.1 inputs/s
    [Fuzz.Windows]=110000             # 30 inputs/s: a class and a window tree made and taken down
    [Fuzz.CapiWindows]=120000         # 34 inputs/s
    [Fuzz.RunningObjects]=120000      # 33 inputs/s: monikers registered in the Running Object Table
    [Fuzz.CapiRunningObjects]=170000  # 49 inputs/s
    [Fuzz.Clipboard]=650000           # 185 inputs/s: the clipboard filled by another program
    [Fuzz.CapiClipboard]=330000       # 92 inputs/s
    [Fuzz.SendText]=500000            # 143 inputs/s: typed into a window of the test
    [Fuzz.CapiSendText]=570000        # 160 inputs/s
    [Fuzz.Messengers]=310000          # 87 inputs/s: registry values written, launches recorded
    [Fuzz.CapiMessengers]=170000      # 47 inputs/s
    # 35 inputs/s measured on the hardened build in the long pass itself (its first 125,000 inputs took an
    # hour): each input writes the program's sound scheme and plays through the system's sound API.
    [Fuzz.Sounds]=125000
    [Fuzz.CapiSounds]=125000
)
# One group at a time each, beside the rest: the drivers of the desktop (foreground, keyboard, clipboard;
# the messenger drivers also hold the messenger keys), and those of this program's sound scheme.
lanes=(" Fuzz.CommandWords Fuzz.SendText Fuzz.CapiSendText Fuzz.Clipboard Fuzz.CapiClipboard Fuzz.Messengers Fuzz.CapiMessengers "
    " Fuzz.Sounds Fuzz.CapiSounds ")

export TAVUTIL_FUZZ_SEED=$seed TAVUTIL_FUZZ_LONG=1
run_driver() {
    local driver=$1 count=${TAVUTIL_FUZZ_INPUTS:-${hour_inputs[$1]:-1000000}}
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
