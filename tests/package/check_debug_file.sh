#!/usr/bin/env bash
# The installed TavUtil.dll is stripped, and the debug file installed beside it still turns a crash address
# into a function and a source line.
#   check_debug_file.sh BUILD_DIR BUILT_DLL OBJDUMP OBJCOPY ADDR2LINE
# Installs into BUILD_DIR/debug-file-check, then: the installed DLL has no symbol table and is well below the
# size of the DLL in the build folder; its .gnu_debuglink names TavUtil.dll.debug; for exported functions
# (one of the C interface, one of the C++ interface) the address read from the export table resolves with
# addr2line, through TavUtil.dll.debug and through the DLL's link to it, to that function and a file:line.
# The DLL in the build folder is compiled with stack protection (-fstack-protector-strong): it carries the
# guard's symbols.
set -u
build_dir=$1
built_dll=$2
objdump=$3
objcopy=$4
addr2line=$5
scratch="$build_dir/debug-file-check"
status=0
fail() {
    echo "FAIL: $*"
    status=1
}

rm -rf "$scratch"
cmake --install "$build_dir" --prefix "$scratch/prefix" >"$scratch.log" 2>&1 || {
    cat "$scratch.log"
    echo "FAIL: cmake --install failed"
    exit 1
}
dll="$scratch/prefix/bin/TavUtil.dll"
debug="$scratch/prefix/bin/TavUtil.dll.debug"
[ -f "$dll" ] || { echo "FAIL: $dll was not installed"; exit 1; }
[ -f "$debug" ] || { echo "FAIL: TavUtil.dll.debug was not installed beside TavUtil.dll"; exit 1; }

# Stripped: no symbol table, and much smaller than the DLL in the build folder.
if ! "$objdump" -t "$dll" | grep -q "^no symbols"; then
    fail "the installed TavUtil.dll has a symbol table ($("$objdump" -t "$dll" | grep -c '^\[') entries)"
fi
if "$objdump" -h "$dll" | grep -q " \.debug_"; then
    fail "the installed TavUtil.dll has debug sections"
fi
installed_size=$(stat -c %s "$dll")
built_size=$(stat -c %s "$built_dll")
echo "TavUtil.dll: $installed_size bytes installed, $built_size bytes in the build folder;" \
    "TavUtil.dll.debug: $(stat -c %s "$debug") bytes"
[ $((installed_size * 2)) -lt "$built_size" ] || fail "the installed TavUtil.dll is not well below the size of the built one"

# The link to the debug file.
"$objcopy" --dump-section .gnu_debuglink="$scratch/debuglink" "$dll" "$scratch/dll-copy" 2>/dev/null ||
    fail "the installed TavUtil.dll has no .gnu_debuglink section"
link_name=$(tr -d '\000' <"$scratch/debuglink" 2>/dev/null | head -c 17)
[ "$link_name" = TavUtil.dll.debug ] || fail ".gnu_debuglink names '$link_name', not TavUtil.dll.debug"

# Stack protection in the built DLL.
built_symbols=$("$objdump" -t "$built_dll")
for symbol in __stack_chk_fail __stack_chk_guard; do
    grep -q "$symbol\$" <<<"$built_symbols" || fail "the built TavUtil.dll has no $symbol: not compiled with stack protection"
done

# Exported functions: their addresses from the export table, and what addr2line makes of them.
exports=$("$objdump" -p "$dll")
image_base=$(sed -n 's/^ImageBase[[:space:]]*//p' <<<"$exports")
rva_of() {  # the RVA of export $1: its index in the name table gives its entry in the address table
    local index
    index=$(sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/p' <<<"$exports" |
        sed -n "s/^[[:space:]]*\[[[:space:]]*\([0-9]*\)\] $1\$/\1/p" | head -1)
    [ -n "$index" ] || return 1
    sed -n '/^Export Address Table -- Ordinal Base/,/^$/p' <<<"$exports" |
        sed -n "s/^[[:space:]]*\[[[:space:]]*$index\] +base\[[[:space:]]*[0-9]*\] \([0-9a-f]*\) Export RVA\$/\1/p"
}
cxx_export=$(sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/p' <<<"$exports" |
    sed -n 's/^[[:space:]]*\[[[:space:]]*[0-9]*\] \(_Z[0-9]*ExecuteProgram.*\)$/\1/p' | head -1)
for function in tav_os_is_vista "$cxx_export"; do
    [ -n "$function" ] || { fail "no exported ExecuteProgram found"; continue; }
    rva=$(rva_of "$function")
    [ -n "$rva" ] || { fail "$function is not in the export table"; continue; }
    address=$(printf '0x%x' $((0x$image_base + 0x$rva)))
    for file in "$debug" "$dll"; do
        # With -i the chain of inlined calls at the address, innermost first: the last one is the function.
        answer=$("$addr2line" -f -i -e "$file" "$address")
        echo "$(basename "$file") $address ($function):"
        sed 's/^/    /' <<<"$answer"
        last_function=$(tail -2 <<<"$answer" | head -1)
        last_line=$(tail -1 <<<"$answer")
        [ "$last_function" = "$function" ] || fail "$address resolves to '$last_function', not $function"
        case "$last_line" in
        *\?\?* | *:0 | *:\?) fail "$address has no source line: $last_line" ;;
        *.cpp:[0-9]* | *.h:[0-9]*) ;;
        *) fail "$address: unexpected source location '$last_line'" ;;
        esac
    done
done

[ $status = 0 ] && echo "the installed TavUtil.dll is stripped and TavUtil.dll.debug resolves its addresses"
exit $status
