#!/usr/bin/env bash
# The release zip as a host developer receives it: made by cmake/make-dist.sh into a scratch folder, its
# .sha256 checked, unpacked into an empty folder, SHA256SUMS checked (and covering every file), the promised
# files present, and then examples/c-host, examples/consumer and the MSVC-ABI host (a CMake project with
# clang-cl and lld-link, through TavUtil::C) built against the unpacked files only and run under Wine.
#   check_release.sh SOURCE_DIR BUILD_DIR TOOLCHAIN VERSION OBJDUMP DLLTOOL
set -u
source_dir=$1 build_dir=$2 toolchain=$3 version=$4 objdump=$5 dlltool=$6
scratch="$build_dir/release-check"
name="TavUtil-$version-win64"
status=0
fail() {
    echo "FAIL: $*"
    status=1
}

rm -rf "$scratch"
mkdir -p "$scratch/dist" "$scratch/unpacked"
"$source_dir/cmake/make-dist.sh" "$build_dir" "$scratch/dist" "$version" || { echo "FAIL: make-dist.sh failed"; exit 1; }
zip="$scratch/dist/$name.zip"
(cd "$scratch/dist" && sha256sum -c --quiet "$name.zip.sha256") || fail "the zip does not match $name.zip.sha256"

# Unpacked into an empty folder: the checksums of every file.
unpacked="$scratch/unpacked"
[ -z "$(ls -A "$unpacked")" ] || { echo "FAIL: $unpacked is not empty"; exit 1; }
unzip -q "$zip" -d "$unpacked" || { echo "FAIL: the zip does not unpack"; exit 1; }
listed=$(sed 's/^[0-9a-f]*  //' "$unpacked/SHA256SUMS" | LC_ALL=C sort)
present=$(cd "$unpacked" && find . -type f ! -name SHA256SUMS | sed 's|^\./||' | LC_ALL=C sort)
if ! (cd "$unpacked" && sha256sum -c --quiet SHA256SUMS); then
    fail "SHA256SUMS does not match the unpacked files"
elif [ "$listed" != "$present" ]; then
    fail "SHA256SUMS does not list exactly the files of the zip: $(diff <(echo "$listed") <(echo "$present") | grep '^[<>]' | head -5 | tr '\n' ' ')"
else
    echo "$name.zip: $(wc -l <<<"$present") files besides SHA256SUMS, all listed in it with matching sums"
fi

for file in bin/TavUtil.dll bin/TavUtil.dll.debug bin/tavutil.exe lib/TavUtil.lib lib/libTavUtil.dll.a \
    include/TavUtil/TavUtil.h include/TavUtil/TavUtilC.h include/TavUtil/TavUtilVersion.h include/TavUtil/log/VelmLog.h \
    lib/cmake/TavUtil/TavUtilConfig.cmake lib/cmake/TavUtil/TavUtilConfigVersion.cmake lib/cmake/TavUtil/TavUtilTargets.cmake \
    share/doc/TavUtil/README.md share/doc/TavUtil/keystroke-scripts.md share/doc/TavUtil/security.md \
    share/doc/TavUtil/compatibility.md share/doc/TavUtil/LICENSE share/doc/TavUtil/CHANGELOG.md \
    share/doc/TavUtil/html/index.html; do
    [ -s "$unpacked/$file" ] || fail "$file is not in the zip"
done
# Headers only below include/TavUtil; the DLL stripped, its debug information in the separate file.
others=$(cd "$unpacked/include" && ls -A | grep -vx TavUtil)
[ -z "$others" ] || fail "include/ holds more than TavUtil/: $others"
"$objdump" -t "$unpacked/bin/TavUtil.dll" | grep -q "^no symbols" || fail "bin/TavUtil.dll is not stripped"
"$objdump" -h "$unpacked/bin/TavUtil.dll.debug" | grep -q " \.debug_info" || fail "bin/TavUtil.dll.debug has no debug information"

# The examples, against the unpacked files only: the package is found there and nowhere else.
build_example() {  # $1 example folder, $2 program, $3 the line that says it works
    local example=$1 program=$2 expected=$3 dir="$scratch/$1" output
    if ! cmake -S "$source_dir/examples/$example" -B "$dir" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$unpacked" -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF \
        -DCMAKE_FIND_USE_SYSTEM_PACKAGE_REGISTRY=OFF >"$dir.log" 2>&1; then
        cat "$dir.log"
        fail "examples/$example does not configure against the unpacked zip"
        return
    fi
    grep -qx "TavUtil_DIR:PATH=$unpacked/lib/cmake/TavUtil" "$dir/CMakeCache.txt" ||
        fail "examples/$example found TavUtil elsewhere: $(grep '^TavUtil_DIR' "$dir/CMakeCache.txt")"
    cmake --build "$dir" >>"$dir.log" 2>&1 || { cat "$dir.log"; fail "examples/$example does not build"; return; }
    cp "$unpacked/bin/TavUtil.dll" "$dir/"
    output=$("$source_dir/cmake/wine-session.sh" run "$build_dir" "$dir/$program") || fail "$program exited with $?"
    echo "$output" | tail -1
    case "$output" in
    *"$expected"*) ;;
    *) fail "$program did not say '$expected'" ;;
    esac
}
build_example c-host c_host.exe "c_host: TavUtil's C interface works"
# With MinGW, TavUtil::C links MinGW's import library.
grep -q "$unpacked/lib/libTavUtil.dll.a" "$scratch/c-host/build.ninja" ||
    fail "examples/c-host (MinGW) is not linked with lib/libTavUtil.dll.a through TavUtil::C"
build_example consumer consumer.exe "consumer: TavUtil works"
"$source_dir/tests/package/check_msvc_consumer.sh" "$source_dir" "$build_dir" "$dlltool" "$unpacked" ||
    fail "the MSVC-ABI host does not build or run against the unpacked zip"

[ $status = 0 ] && echo "the release zip is complete, its checksums hold, and three hosts build and run from it alone"
exit $status
