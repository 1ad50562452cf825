#!/usr/bin/env bash
# The long hostile-input pass cut into ranges that resume across sessions: each call runs the next ranges
# that the ledger does not hold yet, one driver at a time, until MINUTES have passed, and appends a line per
# finished range to the ledger (a file kept in the tree, so the next session goes on where this one stopped).
#   cmake/fuzz-ranges.sh BUILD LEDGER MINUTES DRIVER...
# A driver's whole pass is its count in cmake/fuzz-counts.sh, cut into RANGES parts (default 8); the seed is
# TAVUTIL_FUZZ_SEED (default 20261125), so that ranges run in different sessions make one pass.
set -u
build=${1:?usage: fuzz-ranges.sh BUILD LEDGER MINUTES DRIVER...}
ledger=${2:?missing LEDGER}
minutes=${3:?missing MINUTES}
shift 3
here=$(cd "$(dirname "$0")" && pwd)
. "$here/fuzz-counts.sh"
session="$here/wine-session.sh"
exe="$build/bin/fuzz_tests.exe"
seed=${TAVUTIL_FUZZ_SEED:-20261125}
ranges=${RANGES:-8}
commit=$(git -C "$build" rev-parse --short HEAD)  # the tree the build was made from
deadline=$(($(date +%s) + minutes * 60))
touch "$ledger"
mkdir -p "$build/fuzz-ranges"

"$session" start "$build" || exit 1
trap '"$session" stop "$build"' EXIT
status=0
for driver in "$@"; do
    count=$(fuzz_count "Fuzz.$driver")
    for part in $(seq 0 $((ranges - 1))); do
        from=$((count * part / ranges)) until=$((count * (part + 1) / ranges))
        grep -q "^$driver $seed $count $from $until " "$ledger" && continue
        [ "$(date +%s)" -lt "$deadline" ] || exit "$status"
        log="$build/fuzz-ranges/$driver-$from.log"
        TAVUTIL_FUZZ_LONG=1 TAVUTIL_FUZZ_SEED=$seed TAVUTIL_FUZZ_INPUTS=$count TAVUTIL_FUZZ_FROM=$from \
            TAVUTIL_FUZZ_UNTIL=$until "$session" run "$build" "$exe" --gtest_color=no --gtest_filter="Fuzz.$driver" \
            >"$log" 2>&1
        line=$(tr -d '\r' <"$log" | grep -E '^fuzz: [a-z-]+ +[0-9]+ inputs' | tail -1)
        passed=$(tr -d '\r' <"$log" | grep -c '^\[  PASSED  \] 1 test')
        if [ -z "$line" ] || [ "$passed" != 1 ]; then
            echo "fuzz-ranges: $driver $from..$until FAILED (see $log)"
            status=1
            continue
        fi
        # driver seed count from until commit: inputs outcomes seconds failures
        echo "$driver $seed $count $from $until $commit: $(echo "$line" | sed -E 's/^fuzz: [a-z-]+ +//')" >>"$ledger"
        tail -1 "$ledger"
    done
done
exit "$status"
