# The demo's helpers, sourced by demo.sh (and by the CLI tests, which check them): `say` narrates, `tav`
# runs tavutil.exe through the Wine session ($session, $build) and echoes it as it can be pasted into a shell.

# Bold headings on a terminal only: a log file gets plain text.
if [ -t 1 ]; then bold=$'\033[1m' plain=$'\033[0m'; else bold="" plain=""; fi
say() { printf '\n%s== %s%s\n' "$bold" "$*" "$plain"; }

# Lines that are not tavutil's: the session's own report and what Wine says about itself.
quiet() { grep -v -E '^wine-session: |Read access denied for device|^[0-9a-f]{4}:(fixme|err|warn|trace):' || true; }

# One argument as a shell reads it back: as it is when it holds only safe characters, otherwise in single
# quotes (a quote inside becomes '\'').
shell_word() {
    case $1 in
    '' | *[!A-Za-z0-9_./:=@%+,-]*) printf "'%s'" "${1//\'/\'\\\'\'}" ;;
    *) printf '%s' "$1" ;;
    esac
}

# An answer that is one empty line (a support query for an address that is not the maker's) would read as a
# stray blank in the demo: it is shown as "(empty answer)". Any other output passes as it is.
mark_empty() {
    awk '{ line = $0; sub(/\r$/, "", line) }
         NR == 1 && line == "" { held = 1; next }
         held { print ""; held = 0 }
         { print }
         END { if (held) print "(empty answer)" }'
}

# Runs tavutil.exe with ARGS, echoed as it can be pasted into a shell; a failure the demo means to show ends
# with its status.
tav() {
    printf '$ tavutil'
    for word in "$@"; do printf ' %s' "$(shell_word "$word")"; done
    printf '\n'
    "$session" run "$build" "$build/bin/tavutil.exe" "$@" 2>&1 | quiet | mark_empty
    local status=${PIPESTATUS[0]}
    [ "$status" = 0 ] || echo "(exit status $status)"
    return "$status"
}

# A Windows program of the session, in the background or not, with all of its output left out.
win() { "$session" run "$build" "$@" >/dev/null 2>&1; }

