#!/usr/bin/env bash
# Installs TavUtil into a scratch prefix, builds examples/c-host (C) against the installed package and runs
# it under Wine.
set -eu
source_dir=$1 build_dir=$2 toolchain=$3
scratch="$build_dir/capi-c-host"
rm -rf "$scratch"
cmake --install "$build_dir" --prefix "$scratch/prefix" >/dev/null
cmake -S "$source_dir/examples/c-host" -B "$scratch/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DCMAKE_PREFIX_PATH="$scratch/prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$scratch/build"
cp "$scratch/prefix/bin/TavUtil.dll" "$scratch/build/"
output=$("$source_dir/cmake/wine-session.sh" run "$build_dir" "$scratch/build/c_host.exe")
echo "$output"
case "$output" in
*"c_host: TavUtil's C interface works"*) echo "the C example works against the installed package" ;;
*) echo "FAIL: the C example did not report success"; exit 1 ;;
esac
