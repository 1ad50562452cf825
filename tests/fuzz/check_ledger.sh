#!/usr/bin/env bash
# The long pass's ledger: a range is run only where no line holds its numbers, whatever count a line's pass
# had (an input depends only on the seed and its number), and lines of another seed hold nothing.
# Usage: check_ledger.sh FUZZ_LEDGER_SCRIPT
set -u
tool=$1
ledger=$(mktemp)
trap 'rm -f "$ledger"' EXIT
cat >"$ledger" <<'LINES'
# a comment line
Windows 7 200 0 25 abc1234: 25 inputs, 3 outcomes, 1.0 s, 0 failures
Windows 7 200 25 50 abc1234: 25 inputs, 3 outcomes, 2.0 s, 0 failures
Windows 7 400 70 80 def5678: 10 inputs, 3 outcomes, 0.5 s, 0 failures
Windows 8 400 50 70 def5678: 20 inputs, 3 outcomes, 1.0 s, 0 failures
Clipboard 7 100 0 100 def5678: 100 inputs, 2 outcomes, 4.0 s, 0 failures
LINES

failed=0
expect_gap() {  # DRIVER SEED FROM UNTIL EXPECTED
    local got
    got=$("$tool" gap "$ledger" "$1" "$2" "$3" "$4")
    if [ "$got" != "$5" ]; then
        echo "gap $1 seed $2 [$3, $4): got \"$got\", expected \"$5\""
        failed=1
    fi
}
expect_gap Windows 7 0 25 ""         # held by one line
expect_gap Windows 7 0 50 ""         # held by two lines of the old count
expect_gap Windows 7 0 60 "50 60"    # the numbers after them
expect_gap Windows 7 40 100 "50 70"  # a gap ends where the next line begins
expect_gap Windows 7 70 100 "80 100"
expect_gap Windows 7 55 65 "55 65"   # inside a gap: the line of seed 8 holds nothing for seed 7
expect_gap Windows 9 0 10 "0 10"     # no line of this seed
expect_gap Sounds 7 0 10 "0 10"      # no line of this driver
expect_gap Clipboard 7 0 100 ""

table=$(TAVUTIL_FUZZ_INPUTS=100 "$tool" table "$ledger" 7)
row() { grep -E "^$1 " <<<"$table" | tr -s ' '; }
[ "$(row Windows)" = "Windows 60 100 4 58.33 0" ] || { echo "table row: $(row Windows)"; failed=1; }
[ "$(row Clipboard)" = "Clipboard 100 100 4 40.00 0 whole" ] || { echo "table row: $(row Clipboard)"; failed=1; }
[ "$failed" = 0 ] && echo "ledger: gaps and table as expected"
exit "$failed"
