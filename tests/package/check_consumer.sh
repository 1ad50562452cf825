#!/usr/bin/env bash
# Installs TavUtil into a scratch prefix, builds examples/consumer against the installed package with
# find_package(TavUtil), and runs the consumer under Wine.
set -eu
source_dir=$1
build_dir=$2
toolchain=$3
scratch="$build_dir/package-check"
rm -rf "$scratch"
cmake --install "$build_dir" --prefix "$scratch/prefix" >/dev/null
cmake -S "$source_dir/examples/consumer" -B "$scratch/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DCMAKE_PREFIX_PATH="$scratch/prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$scratch/build"
cp "$scratch/prefix/bin/TavUtil.dll" "$scratch/build/"
output=$("$source_dir/cmake/wine-session.sh" run "$build_dir" "$scratch/build/consumer.exe")
echo "$output"
case "$output" in
*"consumer: TavUtil works"*) echo "the installed package works from outside the tree" ;;
*) echo "FAIL: the consumer did not report success"; exit 1 ;;
esac
