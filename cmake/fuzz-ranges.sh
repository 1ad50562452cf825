#!/usr/bin/env bash
# The long hostile-input pass cut into ranges that resume across sessions: each call runs the parts of the
# next ranges that the ledger does not hold yet, one driver at a time, until MINUTES have passed, and appends
# a line per finished range to the ledger (a file kept in the tree, so the next session goes on where this
# one stopped).
#   cmake/fuzz-ranges.sh BUILD LEDGER MINUTES DRIVER...
# A driver's whole pass is its count in cmake/fuzz-counts.sh, cut into RANGES parts (default 8); the seed is
# TAVUTIL_FUZZ_SEED (default 20261125), so that ranges run in different sessions make one pass. An input
# depends only on the seed and its number, not on the count: inputs that a ledger line holds are not run
# again when a driver's count changes, only the numbers no line covers yet.
# FUZZ_SESSION (default BUILD) is the folder of the Wine session: two calls with different folders run side
# by side, each with its own desktop and registry.
set -u
build=${1:?usage: fuzz-ranges.sh BUILD LEDGER MINUTES DRIVER...}
ledger=${2:?missing LEDGER}
minutes=${3:?missing MINUTES}
shift 3
here=$(cd "$(dirname "$0")" && pwd)
. "$here/fuzz-counts.sh"
. "$here/fuzz-ledger.sh"  # ledger_gap
session="$here/wine-session.sh"
where=${FUZZ_SESSION:-$build}
exe="$build/bin/fuzz_tests.exe"
seed=${TAVUTIL_FUZZ_SEED:-20261125}
ranges=${RANGES:-8}
commit=$(git -C "$build" rev-parse --short HEAD)  # the tree the build was made from
deadline=$(($(date +%s) + minutes * 60))
touch "$ledger"
mkdir -p "$build/fuzz-ranges"

"$session" start "$where" || exit 1
trap '"$session" stop "$where"' EXIT
status=0
for driver in "$@"; do
    count=$(fuzz_count "Fuzz.$driver")
    for part in $(seq 0 $((ranges - 1))); do
        start=$((count * part / ranges)) end=$((count * (part + 1) / ranges))
        while gap=$(ledger_gap "$ledger" "$driver" "$seed" "$start" "$end") && [ -n "$gap" ]; do
            read -r from until <<<"$gap"
            [ "$(date +%s)" -lt "$deadline" ] || exit "$status"
            log="$build/fuzz-ranges/$driver-$from.log"
            TAVUTIL_FUZZ_LONG=1 TAVUTIL_FUZZ_SEED=$seed TAVUTIL_FUZZ_INPUTS=$count TAVUTIL_FUZZ_FROM=$from \
                TAVUTIL_FUZZ_UNTIL=$until "$session" run "$where" "$exe" --gtest_color=no \
                --gtest_filter="Fuzz.$driver" >"$log" 2>&1
            line=$(tr -d '\r' <"$log" | grep -E '^fuzz: [a-z-]+ +[0-9]+ inputs' | tail -1)
            passed=$(tr -d '\r' <"$log" | grep -c '^\[  PASSED  \] 1 test')
            if [ -z "$line" ] || [ "$passed" != 1 ]; then
                echo "fuzz-ranges: $driver $from..$until FAILED (see $log)"
                status=1
                break
            fi
            # driver seed count from until commit: inputs outcomes seconds failures
            echo "$driver $seed $count $from $until $commit: $(echo "$line" | sed -E 's/^fuzz: [a-z-]+ +//')" >>"$ledger"
            tail -1 "$ledger"
        done
    done
done
exit "$status"
