#!/usr/bin/env bash
# A short demonstration of tavutil.exe under Wine and Xvfb. Each demo/NN-*.sh piece is sourced in turn;
# a piece calls `tav ARGS...` to run the CLI and `say TEXT` to narrate. Every command is echoed as it can be
# pasted into a shell; the session's own lines and Wine's noise are left out.
set -u
build=$(cd "${1:-build}" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
session="$here/../cmake/wine-session.sh"

# shellcheck source=demo/helpers.sh
. "$here/helpers.sh"

"$session" start "$build" 2>&1 | quiet
[ "${PIPESTATUS[0]}" = 0 ] || exit 1
trap '"$session" stop "$build" >/dev/null 2>&1' EXIT
cd "$build"  # a folder without executables of system names
for piece in "$here"/[0-9][0-9]-*.sh; do
    # shellcheck source=/dev/null
    . "$piece"
done
printf '\nThe screenshots are in %s: demo-keys.png, demo-folder-picker.png\n' "$build"
