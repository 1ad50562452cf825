#!/usr/bin/env bash
# A short demonstration of tavutil.exe under Wine and Xvfb. Each demo/NN-*.sh piece is sourced in turn;
# a piece calls `tav ARGS...` to run the CLI and `say TEXT` to narrate.
set -u
build=$(cd "${1:-build}" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
session="$here/../cmake/wine-session.sh"

say() { printf '\n\033[1m== %s\033[0m\n' "$*"; }
tav() {
    printf '$ tavutil %s\n' "$*"
    "$session" run "$build" "$build/bin/tavutil.exe" "$@"
}

"$session" start "$build" || exit 1
trap '"$session" stop "$build"' EXIT
cd "$build"  # a folder without executables of system names
for piece in "$here"/[0-9][0-9]-*.sh; do
    # shellcheck source=/dev/null
    . "$piece"
done
