#!/usr/bin/env bash
# The demo's helpers (demo/helpers.sh): commands echoed as a shell reads them back, no line of the session's
# own or of Wine's, colour only on a terminal, a failure shown with its status. Run by CTest, no Wine needed.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
failures=0
check() {  # check NAME EXPECTED ACTUAL
    if [ "$2" != "$3" ]; then
        printf 'FAILED %s\n  expected: %q\n  actual:   %q\n' "$1" "$2" "$3"
        failures=$((failures + 1))
    else
        printf 'ok %s\n' "$1"
    fi
}

stub=$(mktemp -d)
trap 'rm -rf "$stub"' EXIT
# A stand-in for the Wine session: what `run` of a failing program prints, noise included.
cat >"$stub/session.sh" <<'STUB'
#!/usr/bin/env bash
shift 3
echo "Read access denied for device L\"\\\\??\\\\Z:\\\\\", FS volume label and serial are not available."
echo "0024:fixme:ntdll:NtQuerySystemInformation info_class SYSTEM_PERFORMANCE_INFORMATION"
echo "answer: $*"
echo "wine-session: tavutil.exe ended with status 1" >&2
exit 1
STUB
chmod +x "$stub/session.sh"
session="$stub/session.sh"
build="$stub"
# shellcheck source=demo/helpers.sh
. "$root/demo/helpers.sh"

for word in abc 'a b' "it's" '' '50% (a+b) {x}' 'Grüße €' 'C:\users\Public' '+hello!~{TAB 2}' '$HOME' '`x`' \
    '*' 'a"b' $'line\tend'; do
    eval "back=$(shell_word "$word")"
    check "shell_word round trip of [$word]" "$word" "$back"
done
check "a plain word stays plain" "keys" "$(shell_word keys)"

check "no colour when not on a terminal" "$(printf '\n== Heading')" "$(say Heading)"

output=$(tav keys --dry-run '50% {x}')
status=$?
check "tav echoes, drops the machinery and Wine's noise, shows the status" \
    "$(printf '%s\n' "\$ tavutil keys --dry-run '50% {x}'" "answer: keys --dry-run 50% {x}" "(exit status 1)")" \
    "$output"
check "tav returns the program's status" 1 "$status"

check "one empty answer line is shown as such" "(empty answer)" "$(printf '\r\n' | mark_empty)"
check "an empty line among others stays" "$(printf 'a\n\nb')" "$(printf 'a\n\nb\n' | mark_empty)"
check "an empty first line before others stays" "$(printf '\nb')" "$(printf '\nb\n' | mark_empty)"
check "no output stays no output" "" "$(printf '' | mark_empty)"

last=$(grep -v '^[[:space:]]*$' "$root/demo/demo.sh" | tail -n 1)
check "the demo ends on the line that says where the screenshots are" \
    "printf '\\nThe screenshots are in %s: demo-keys.png, demo-folder-picker.png\\n' \"\$build\"" "$last"

[ "$failures" = 0 ] && echo "all demo helper checks passed"
exit $((failures > 0))
