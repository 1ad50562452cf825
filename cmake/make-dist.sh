#!/usr/bin/env bash
# The release zip: installs the build into a fresh staging folder, writes SHA256SUMS of every file in it, and
# packs it as OUT_DIR/TavUtil-VERSION-win64.zip with the zip's own checksum beside it (.sha256).
#   make-dist.sh BUILD_DIR OUT_DIR VERSION
# The zip holds bin/ (TavUtil.dll stripped, TavUtil.dll.debug, tavutil.exe), lib/ (TavUtil.lib, libTavUtil.dll.a,
# cmake/TavUtil/), include/TavUtil/, share/doc/TavUtil/ (README, guides, LICENSE, CHANGELOG.md, the reference
# HTML) and SHA256SUMS. `make dist` runs it through the build's `dist` target; the release test runs it too.
set -eu
build_dir=$1 out_dir=$2 version=$3
name="TavUtil-$version-win64"
mkdir -p "$out_dir"
out_dir=$(cd "$out_dir" && pwd)
stage="$out_dir/$name.stage"
rm -rf "$stage" "$out_dir/$name.zip" "$out_dir/$name.zip.sha256"
cmake --install "$build_dir" --prefix "$stage" >"$out_dir/$name.install.log"
(
    cd "$stage"
    find . -type f | sed 's|^\./||' | LC_ALL=C sort | xargs sha256sum >"$out_dir/$name.SHA256SUMS"
    mv "$out_dir/$name.SHA256SUMS" SHA256SUMS
    # Entries in name order, no extra file attributes, no owner ids.
    find . -type f | sed 's|^\./||' | LC_ALL=C sort | zip -q -X -D "$out_dir/$name.zip" -@
)
rm -rf "$stage" "$out_dir/$name.install.log"
(cd "$out_dir" && sha256sum "$name.zip" >"$name.zip.sha256")
echo "$out_dir/$name.zip: $(unzip -Z1 "$out_dir/$name.zip" | wc -l) files, $(stat -c %s "$out_dir/$name.zip") bytes"
echo "$out_dir/$name.zip.sha256: $(cut -d' ' -f1 "$out_dir/$name.zip.sha256")"
