#!/usr/bin/env bash
# A CMake project built with a Microsoft-style toolchain (clang-cl and lld-link, tests/package/msvc-consumer)
# takes TavUtil through the installed package's imported target TavUtil::C: the target must hand it TavUtil.lib
# and the include folder, and the host it builds must run under Wine beside the installed TavUtil.dll.
#   check_msvc_consumer.sh SOURCE_DIR BUILD_DIR DLLTOOL [PREFIX]
# Without PREFIX the build folder is installed into a scratch prefix first; the release test passes the folder
# it unpacked the release zip into.
set -eu
source_dir=$1 build_dir=$2 dlltool=$3 prefix=${4:-}
scratch="$build_dir/msvc-consumer-check${4:+-given-prefix}"
rm -rf "$scratch"
mkdir -p "$scratch"
if [ -z "$prefix" ]; then
    prefix="$scratch/prefix"
    cmake --install "$build_dir" --prefix "$prefix" >/dev/null
fi
for dll in kernel32 ole32; do
    "$dlltool" -m i386:x86-64 -d "$source_dir/tests/capi/msvc/$dll.def" -l "$scratch/$dll.lib"
done
configure_log="$scratch/configure.log"
if ! cmake -S "$source_dir/tests/package/msvc-consumer" -B "$scratch/build" -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE="$source_dir/tests/package/msvc-consumer/toolchain-clang-msvc.cmake" \
    -DCMAKE_PREFIX_PATH="$prefix" -DSYSTEM_LIBS="$scratch/kernel32.lib;$scratch/ole32.lib" >"$configure_log" 2>&1; then
    cat "$configure_log"
    echo "FAIL: CMake could not configure the project with clang-cl and lld-link"
    exit 1
fi
grep -E "^-- (The C compiler|TavUtil::C)" "$configure_log"
status=0
grep -q "^-- TavUtil::C: compiler Clang simulating MSVC, import library $prefix/lib/TavUtil.lib, include $prefix/include\$" \
    "$configure_log" || { echo "FAIL: TavUtil::C does not give TavUtil.lib and $prefix/include"; status=1; }
cmake --build "$scratch/build" -- -v >"$scratch/build.log" 2>&1 || { cat "$scratch/build.log"; echo "FAIL: the build failed"; exit 1; }
# The link line: lld-link, and TavUtil.lib from the package (not MinGW's import library).
link_line=$(grep -i "lld-link" "$scratch/build.log" | tail -1)
case "$link_line" in
*"$prefix/lib/TavUtil.lib"*) ;;
*) echo "FAIL: the link line does not name the package's TavUtil.lib: $link_line"; status=1 ;;
esac
case "$link_line" in
*libTavUtil.dll.a*) echo "FAIL: the link line names MinGW's import library"; status=1 ;;
esac
cp "$prefix/bin/TavUtil.dll" "$scratch/build/"
run_status=0
output=$("$source_dir/cmake/wine-session.sh" run "$build_dir" "$scratch/build/capi_msvc_host.exe") || run_status=$?
tail -1 <<<"$output"
case "$output" in
*"msvc host: "*" checks, 0 failed"*) [ $run_status = 0 ] || status=1 ;;
*) echo "FAIL: the host built by CMake did not report success (status $run_status)"; status=1 ;;
esac
[ $status = 0 ] && echo "a CMake project with clang-cl and lld-link links TavUtil::C (TavUtil.lib) and runs"
exit $status
