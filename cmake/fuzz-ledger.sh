#!/usr/bin/env bash
# What the long pass's ledger holds (tests/fuzz/long-pass-ledger.txt, a line per finished range, written by
# fuzz-ranges.sh as "DRIVER SEED COUNT FROM UNTIL COMMIT: N inputs, K outcomes, S s, F failures"). An input
# depends only on the seed and its number, so a line holds its numbers whatever count its pass had then.
#   fuzz-ledger.sh table LEDGER [SEED]      a row per driver: the numbers held of its count (cmake/fuzz-counts.sh),
#                                           seconds, milliseconds per input, failures, and "whole" when all are held
#   fuzz-ledger.sh gap LEDGER DRIVER SEED FROM UNTIL
#                                           the first gap in [FROM, UNTIL) that no line holds, as "FIRST END";
#                                           nothing when the lines hold it all
# fuzz-ranges.sh sources it for ledger_gap.

# The first number in [FROM, UNTIL) that no line of DRIVER and SEED holds, and where the next line begins.
ledger_gap() {
    awk -v driver="$2" -v seed="$3" -v from="$4" -v until="$5" '
        $1 == driver && $2 == seed { n++; lo[n] = $4 + 0; hi[n] = $5 + 0 }
        END {
            at = from
            do {  # climb over every line that holds the number reached
                moved = 0
                for (i = 1; i <= n; i++)
                    if (lo[i] <= at && hi[i] > at) { at = hi[i]; moved = 1 }
            } while (moved && at < until)
            if (at >= until) exit
            end = until
            for (i = 1; i <= n; i++)
                if (lo[i] > at && lo[i] < end) end = lo[i]
            print at, end
        }' "$1"
}

ledger_table() {
    local ledger=$1 seed=${2:-20261125}
    printf '%-20s %10s %10s %9s %12s %9s\n' driver held count seconds "ms/input" failures
    awk -v seed="$seed" '$2 == seed && NF >= 12 {
            seconds = $11; failures = $13
            print $1, $4 + 0, $5 + 0, seconds + 0, failures + 0
        }' "$ledger" | sort -k1,1 -k2,2n |
        awk '$1 != driver { if (driver != "") print driver, held, seconds, failures
                            driver = $1; held = 0; reached = 0; seconds = 0; failures = 0 }
             { lo = $2 < reached ? reached : $2; if ($3 > lo) { held += $3 - lo; reached = $3 }
               seconds += $4; failures += $5 }
             END { if (driver != "") print driver, held, seconds, failures }' |
        while read -r driver held seconds failures; do
            local count
            count=$(fuzz_count "Fuzz.$driver")
            printf '%-20s %10d %10d %9.0f %12.2f %9d%s\n' "$driver" "$held" "$count" "$seconds" \
                "$(awk -v s="$seconds" -v n="$held" 'BEGIN { print n ? s * 1000 / n : 0 }')" "$failures" \
                "$([ "$held" -ge "$count" ] && echo "  whole")"
        done
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
    set -u
    here=$(cd "$(dirname "$0")" && pwd)
    . "$here/fuzz-counts.sh"
    case "${1:-}" in
    table) ledger_table "${2:?missing LEDGER}" "${3:-}" ;;
    gap) ledger_gap "${2:?missing LEDGER}" "${3:?missing DRIVER}" "${4:?missing SEED}" "${5:?missing FROM}" \
        "${6:?missing UNTIL}" ;;
    *)
        echo "usage: fuzz-ledger.sh table LEDGER [SEED] | gap LEDGER DRIVER SEED FROM UNTIL" >&2
        exit 2
        ;;
    esac
fi
