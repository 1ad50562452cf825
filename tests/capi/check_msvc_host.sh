#!/usr/bin/env bash
# The proof that a host built with Microsoft's tools can use TavUtil: installs the package into a scratch
# prefix, compiles tests/capi/msvc/MsvcHost.c with clang for the Microsoft ABI, links it with lld-link against
# the installed TavUtil.lib (and import libraries of kernel32 and ole32 made here) with no C runtime, and runs
# it under Wine beside the installed TavUtil.dll.
set -eu
source_dir=$1 build_dir=$2 clang=$3 lld_link=$4 dlltool=$5
scratch="$build_dir/capi-msvc-host"
host="$source_dir/tests/capi/msvc"
rm -rf "$scratch"
mkdir -p "$scratch/bin"
cmake --install "$build_dir" --prefix "$scratch/prefix" >/dev/null
[ -f "$scratch/prefix/lib/TavUtil.lib" ] || { echo "FAIL: the package has no lib/TavUtil.lib"; exit 1; }
for dll in kernel32 ole32; do
    "$dlltool" -m i386:x86-64 -d "$host/$dll.def" -l "$scratch/$dll.lib"
done
"$clang" --target=x86_64-pc-windows-msvc -ffreestanding -fno-builtin -O1 -Wall -Wextra -Werror -std=c11 \
    -I "$scratch/prefix/include" -c "$host/MsvcHost.c" -o "$scratch/MsvcHost.obj"
"$lld_link" /nologo /nodefaultlib /entry:start /subsystem:console /out:"$scratch/bin/capi_msvc_host.exe" \
    "$scratch/MsvcHost.obj" "$scratch/prefix/lib/TavUtil.lib" "$scratch/kernel32.lib" "$scratch/ole32.lib"
cp "$scratch/prefix/bin/TavUtil.dll" "$scratch/bin/"
status=0
output=$("$source_dir/cmake/wine-session.sh" run "$build_dir" "$scratch/bin/capi_msvc_host.exe") || status=$?
echo "$output"
case "$output" in
*"msvc host: "*" checks, 0 failed"*) [ $status = 0 ] && echo "a host built with the Microsoft ABI uses TavUtil" && exit 0 ;;
esac
echo "FAIL: the MSVC-ABI host did not report success (status $status)"
exit 1
