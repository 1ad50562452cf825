#!/usr/bin/env bash
# One Wine session per folder (a build directory, or the folder of a second session inside one): a private
# prefix (made once, reused), one Xvfb and one persistent wineserver for a whole test run.
#
#   wine-session.sh start BUILD_DIR        make the prefix if needed, start Xvfb and the wineserver
#   wine-session.sh stop  BUILD_DIR        stop both (by pid for Xvfb)
#   wine-session.sh run   BUILD_DIR [--presses-keys SECONDS] EXE [ARGS...]
#                                          run a Windows program in the session; without a started
#                                          session, one is started for this program alone. A program
#                                          that presses keys in the X server (xdotool) says so: it is
#                                          ended after SECONDS, and however it ends, its keys are let go
#   wine-session.sh release-keys BUILD_DIR let go of every key a test presses in the X server
#   wine-session.sh env   BUILD_DIR        print the environment of the session (for `eval`)
#
# CMake uses `run` as the cross-compiling emulator, so every test and tool target runs under Wine.
set -u

cmd=${1:?usage: wine-session.sh start|stop|run|env|release-keys BUILD_DIR [EXE ARGS...]}
[ "$cmd" = start ] && mkdir -p "${2:?missing BUILD_DIR}"  # a session folder of its own (a second desktop)
build=$(cd "${2:?missing BUILD_DIR}" && pwd)
shift 2

prefix="$build/wineprefix"
state="$build/wine-session.state"

if [ -x /usr/lib/wine/wine64 ]; then WINE=/usr/lib/wine/wine64; else WINE=wine; fi
export WINEPREFIX="$prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" LC_ALL=C.UTF-8
# A program that is run by hand must not pick up the caller's display or audio.
unset WAYLAND_DISPLAY

log() { echo "wine-session: $*" >&2; }

# Debian's Wine starts without its preloader, so nothing holds the addresses a Windows process needs before
# the loader's own heap is placed, and the kernel places that heap anywhere in the 1 GiB above the loader
# (0x7d000000). About one start in 7,000 (measured: 5 in 34,000) the heap covers 0x7ffe0000, where Windows
# keeps its shared user data page: Wine ends the new process with status 1 before it runs ("failed to map
# the shared user data: c0000018"), and the CreateProcessW that started it fails with ERROR_INTERNAL_ERROR.
# Without address randomisation, which every process Wine starts inherits, the heap follows the loader.
norandom=()
setarch "$(uname -m)" -R true 2>/dev/null && norandom=(setarch "$(uname -m)" -R)

make_prefix() {
    [ -f "$prefix/.tavutil-ready" ] && return 0
    log "creating the Wine prefix in $prefix (once per build directory)"
    rm -rf "$prefix"
    mkdir -p "$prefix"
    "${norandom[@]}" wineboot -i </dev/null >/dev/null 2>&1
    wineserver -w
    # Without a window manager every hide of a visible top-level window costs 2 s; unmanaged windows
    # close at once. There is no sound device on these machines: no audio driver, no ALSA noise.
    (cd "$prefix" &&
        "${norandom[@]}" "$WINE" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f &&
        "${norandom[@]}" "$WINE" reg add 'HKCU\Software\Wine\Drivers' /v Audio /d "" /f) >/dev/null 2>&1
    wineserver -w
    touch "$prefix/.tavutil-ready"
}

# Xvfb's keymap puts ( and ) also on keycodes 187 and 188, < and > also on 94 (the extra key of 105-key
# keyboards) and a Linefeed on 109. Wine finds a character's key by its first keycode, knows no virtual key
# for those four, and so types no ( or ) at all, < without Shift and a line feed as an unknown key. With
# them cleared, every printable ASCII character has its US key (tests/support/TestKeyboard.md). Before the
# first Wine program: each one reads the keymap when it starts.
complete_us_keymap() {
    DISPLAY=$1 xmodmap -e 'keycode 94 =' -e 'keycode 109 =' -e 'keycode 187 =' -e 'keycode 188 =' ||
        log "xmodmap could not clear the extra keys: ( and ) cannot be typed in this session"
}

start_session() {
    make_prefix
    local fdfile="$build/xvfb.display"
    rm -f "$fdfile"
    # The background servers must not hold the caller's output pipes open (CTest waits for them).
    # -noreset: the server keeps its keymap (complete_us_keymap) when its last client goes.
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$fdfile" </dev/null >/dev/null 2>&1 &
    local xpid=$!
    for _ in $(seq 100); do
        [ -s "$fdfile" ] && break
        sleep 0.05
    done
    local display
    display=$(tr -d '\n' <"$fdfile")
    if [ -z "$display" ]; then
        log "Xvfb did not start"
        kill "$xpid" 2>/dev/null
        return 1
    fi
    complete_us_keymap ":$display"
    wineserver -k >/dev/null 2>&1
    wineserver -w >/dev/null 2>&1
    wineserver -p </dev/null >/dev/null 2>&1
    printf 'XVFB_PID=%s\nDISPLAY=:%s\nSERVER_PID=%s\n' "$xpid" "$display" "$(server_pid)" >"$state"
    # Wine starts its system processes (services, device drivers, the desktop) with the first program
    # that needs them, and they inherit that program's output. Start them here, with no output to hold,
    # so that no test's output pipe stays open after the test.
    (export DISPLAY=":$display"; cd "$build" &&
        "${norandom[@]}" "$WINE" rundll32.exe user32.dll,GetDesktopWindow </dev/null >/dev/null 2>&1)
}

# Windows processes of this prefix that outlived their wineserver (seen after runs on an overloaded machine:
# system processes of a session that hung) would hold pipes and files of earlier runs: they end with it.
kill_leftovers() {
    local pid
    for pid in $(pgrep -f 'C:\\windows\\' 2>/dev/null); do
        { tr '\0' '\n' <"/proc/$pid/environ"; } 2>/dev/null | grep -qx "WINEPREFIX=$prefix" && kill -9 "$pid" 2>/dev/null
    done
}

# The pid of this prefix's wineserver, if one runs.
server_pid() {
    local pid
    for pid in $(pgrep -x wineserver64 2>/dev/null; pgrep -x wineserver 2>/dev/null); do
        { tr '\0' '\n' <"/proc/$pid/environ"; } 2>/dev/null | grep -qx "WINEPREFIX=$prefix" && echo "$pid" && return
    done
}

# A session's wineserver that ends while its programs run leaves them hanging, and the next program starts a
# server of its own: seen once in the full suite, cause unknown. Each run says so when it happens, and each
# stop is written down with the command that asked for it, so that the next time shows who or what ended it.
check_server() {
    local expected
    expected=$(sed -n 's/^SERVER_PID=//p' "$state" 2>/dev/null)
    [ -n "$expected" ] && [ ! -d "/proc/$expected" ] &&
        log "the session's wineserver (pid $expected) has ended; $(basename "$1") ran without it"
}

stop_session() {
    echo "$(date '+%T') stop, asked by: $(tr '\0' ' ' <"/proc/$PPID/cmdline" 2>/dev/null)" >>"$build/wine-session.log"
    wineserver -k >/dev/null 2>&1
    wineserver -w >/dev/null 2>&1
    kill_leftovers
    if [ -f "$state" ]; then
        local pid
        pid=$(sed -n 's/^XVFB_PID=//p' "$state")
        [ -n "$pid" ] && kill "$pid" 2>/dev/null
        rm -f "$state"
    fi
}

# The keys the tests press through xdotool (tests/support/PhysicalKeyboard.h): modifiers of both sides. A
# program killed while it held one leaves it down in the X server, and Wine, which takes the X server's key
# state when one of its windows gets the focus, would show it down to every program after it.
release_keys() {
    xdotool keyup Shift_L Shift_R Control_L Control_R Alt_L Alt_R Super_L Super_R >/dev/null 2>&1 ||
        log "xdotool could not let go of the keys on $DISPLAY"
}

load_session() {
    [ -f "$state" ] || return 1
    local pid
    pid=$(sed -n 's/^XVFB_PID=//p' "$state")
    kill -0 "$pid" 2>/dev/null || return 1
    export DISPLAY
    DISPLAY=$(sed -n 's/^DISPLAY=//p' "$state")
}

case "$cmd" in
start)
    stop_session
    start_session
    ;;
stop)
    stop_session
    ;;
env)
    load_session || { log "no session running for $build"; exit 1; }
    printf 'export WINEPREFIX=%q WINEDEBUG=-all WINEDLLOVERRIDES=%q LC_ALL=C.UTF-8 DISPLAY=%q WINE=%q\n' \
        "$WINEPREFIX" "$WINEDLLOVERRIDES" "$DISPLAY" "$WINE"
    ;;
run)
    limit=()
    presses_keys=0
    if [ "${1:-}" = --presses-keys ]; then
        # Its own time limit, below the caller's, so that the keys are let go after it in every case (a
        # caller's time-out kills this script too).
        limit_seconds=${2:?missing seconds}
        limit=(timeout -k 10 "$limit_seconds")
        presses_keys=1
        shift 2
    fi
    exe=${1:?missing program}
    shift
    owned=0
    if ! load_session; then
        start_session || exit 1
        load_session
        owned=1
    fi
    if [ -t 1 ]; then
        "${norandom[@]}" "${limit[@]}" "$WINE" "$exe" "$@"
        rc=$?
    else
        # Wine starts its system processes (services, rpcss, ...) with the first program that needs them,
        # and they inherit that program's output: a reader of a pipe (CTest) would wait for them to end. The
        # program writes to a file instead, passed on as it grows until the program ends, so that a program
        # killed for its time-out still leaves what it wrote (the name of the test that was running).
        out=$(mktemp)
        exec 3<&0  # a program started in the background would read nothing
        "${norandom[@]}" "${limit[@]}" "$WINE" "$exe" "$@" <&3 >"$out" 2>&1 3<&- &
        program=$!
        tail -n +1 -s 0.2 -f --pid="$program" "$out" &
        reader=$!
        wait "$program"
        rc=$?
        wait "$reader"
        rm -f "$out"
    fi
    [ "$rc" = 0 ] || log "$(basename "$exe") ended with status $rc"
    [ "$presses_keys" = 1 ] && [ "$rc" = 124 ] && log "$(basename "$exe") was ended after $limit_seconds s"
    [ "$presses_keys" = 1 ] && release_keys
    [ "$owned" = 1 ] || check_server "$exe"
    [ "$owned" = 1 ] && stop_session
    exit $rc
    ;;
release-keys)
    load_session || { log "no session running for $build"; exit 1; }
    release_keys
    ;;
*)
    log "unknown command $cmd"
    exit 2
    ;;
esac
