#!/usr/bin/env bash
# Fails when a shipped binary imports any DLL that is neither TavUtil nor part of Windows itself (the C and C++ runtimes
# and winpthread must be linked statically).
#   check_imports.sh OBJDUMP BINARY...
#   check_imports.sh --known-dlls OBJDUMP BINARY...
# With --known-dlls the list is stricter: only DLLs that Windows always takes from its system folder (its known
# DLLs), so that no import can be satisfied by a copy beside the host program. TavUtil.dll is held to it; it
# binds the functions of other system DLLs at run time, from the system folder.
set -u
allowed='^(tavutil|kernel32|user32|gdi32|advapi32|shell32|shlwapi|comdlg32|ole32|oleaut32|version|winmm|msvcrt|psapi|dwmapi|comctl32|uuid|ws2_32|rpcrt4|ntdll|api-ms-win-.*)\.dll$'
what="a Windows system DLL"
if [ "${1:-}" = --known-dlls ]; then
    allowed='^(kernel32|user32|gdi32|advapi32|shell32|comdlg32|ole32|oleaut32|msvcrt)\.dll$'
    what="a DLL that Windows always loads from its system folder"
    shift
fi
objdump=$1
shift
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
            echo "FAIL $(basename "$binary") imports $dll, which is not $what"
            status=1
        fi
    done <<<"$imports"
    echo "$(basename "$binary"): $(echo "$imports" | tr '\n' ' ')"
done
[ $status = 0 ] && echo "every import is $what"
exit $status
