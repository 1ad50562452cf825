#!/usr/bin/env bash
# Fails when a shipped binary imports any DLL that is neither TavUtil nor part of Windows itself (the C and C++ runtimes
# and winpthread must be linked statically).
set -u
objdump=$1
shift
allowed='^(tavutil|kernel32|user32|gdi32|advapi32|shell32|shlwapi|comdlg32|ole32|oleaut32|version|winmm|msvcrt|psapi|dwmapi|comctl32|uuid|ws2_32|rpcrt4|ntdll|api-ms-win-.*)\.dll$'
status=0
for binary in "$@"; do
    imports=$("$objdump" -p "$binary" | sed -n 's/^[[:space:]]*DLL Name: //p')
    if [ -z "$imports" ]; then
        echo "FAIL $binary: no import table read"
        status=1
        continue
    fi
    while read -r dll; do
        if ! printf '%s\n' "$dll" | tr 'A-Z' 'a-z' | grep -Eq "$allowed"; then
            echo "FAIL $(basename "$binary") imports $dll, which is not a Windows system DLL"
            status=1
        fi
    done <<<"$imports"
    echo "$(basename "$binary"): $(echo "$imports" | tr '\n' ' ')"
done
[ $status = 0 ] && echo "all imports are Windows system DLLs"
exit $status
