#!/usr/bin/env bash
# The reference documentation is complete: Doxygen, run afresh with the build's Doxyfile, warns about nothing
# (every function, parameter, macro, record and field of the C headers is documented), and every header has a
# page of its own. Doxygen lists a file's functions only when the file itself is documented (@file), so a header
# without that comment would hide its undocumented functions from the warnings: that is a failure too.
#   check_docs.sh DOXYGEN DOXYFILE SOURCE_DIR GENERATED_INCLUDE SCRATCH
set -u
doxygen=$1 doxyfile=$2 source_dir=$3 generated=$4 scratch=$5
rm -rf "$scratch"
mkdir -p "$scratch"
{
    cat "$doxyfile"
    echo "OUTPUT_DIRECTORY = $scratch"
    echo "WARN_LOGFILE = $scratch/warnings.txt"
} | "$doxygen" - >"$scratch/doxygen.log" 2>&1 || {
    cat "$scratch/doxygen.log"
    echo "FAIL: Doxygen failed"
    exit 1
}
status=0
[ -f "$scratch/html/index.html" ] || { echo "FAIL: no html/index.html"; status=1; }
warnings=$(grep -c . "$scratch/warnings.txt" 2>/dev/null || true)
if [ "${warnings:-0}" -gt 0 ]; then
    echo "FAIL: $warnings lines of Doxygen warnings; the first 40:"
    head -40 "$scratch/warnings.txt"
    echo "by kind:"
    sed -n 's/^[^:]*:[0-9]*: warning: //p' "$scratch/warnings.txt" | awk '{print $1}' | sort | uniq -c | sort -rn
    status=1
fi
headers=$(cd "$source_dir/util/capi" && find . -name '*.h' -not -path '*/detail/*' | sort)
pages=0
for header in $headers "$generated/TavUtil/TavUtilVersion.h"; do
    name=$(basename "$header" .h)
    page="$scratch/html/$(sed 's/_/__/g' <<<"$name")_8h.html"
    if [ -f "$page" ]; then
        pages=$((pages + 1))
    else
        echo "FAIL: $header has no page: it needs a file comment (@file) for its functions to be documented"
        status=1
    fi
done
echo "$pages header pages, ${warnings:-0} warning lines"
[ $status = 0 ] && echo "the reference documentation has no warning and a page for every header"
exit $status
