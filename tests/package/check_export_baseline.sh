#!/usr/bin/env bash
# The export baseline (docs/compatibility.md): every export named in the checked-in lists is still exported by
# TavUtil.dll. New exports may be added; one that disappears fails the test.
#   check_export_baseline.sh OBJDUMP DLL C_LIST CXX_LIST            check
#   check_export_baseline.sh --refresh OBJDUMP DLL C_LIST CXX_LIST  rewrite both lists from the DLL (make export-baseline)
# C_LIST holds the C interface's exports (the plain tav_ names); CXX_LIST every other export, the C++ interface's:
# its functions as mangled names (plus a few constants of the C++ headers, which have plain names). The mangled
# name is exactly what a host's linker binds (it carries the parameter types), whereas demangled text varies
# with the demangler's version and its spelling of standard types.
set -u
refresh=0
if [ "${1:-}" = --refresh ]; then
    refresh=1
    shift
fi
objdump=$1 dll=$2 c_list=$3 cxx_list=$4
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

"$objdump" -p "$dll" | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/p' |
    sed -n 's/^[[:space:]]*\[[[:space:]]*[0-9]*\] \([^ ]*\)$/\1/p' | LC_ALL=C sort -u >"$scratch/all"
grep '^tav_' "$scratch/all" >"$scratch/c"
grep -v '^tav_' "$scratch/all" >"$scratch/cxx"
c_count=$(wc -l <"$scratch/c")
cxx_count=$(wc -l <"$scratch/cxx")
if [ "$c_count" -eq 0 ] || [ "$cxx_count" -eq 0 ]; then
    echo "FAIL: no exports read from $dll ($c_count C, $cxx_count C++)"
    exit 1
fi

if [ $refresh = 1 ]; then
    cp "$scratch/c" "$c_list"
    cp "$scratch/cxx" "$cxx_list"
    echo "wrote $c_count C exports to $c_list and $cxx_count C++ exports to $cxx_list"
    exit 0
fi

status=0
check() {  # $1 the list, $2 the DLL's exports of that kind, $3 the kind's name
    local listed missing added
    [ -s "$1" ] || { echo "FAIL: $1 is empty or missing"; status=1; return; }
    listed=$(wc -l <"$1")
    missing=$(LC_ALL=C comm -23 <(LC_ALL=C sort -u "$1") "$2")
    added=$(LC_ALL=C comm -13 <(LC_ALL=C sort -u "$1") "$2" | wc -l)
    if [ -n "$missing" ]; then
        echo "FAIL: $(wc -l <<<"$missing") $3 exports of the baseline are gone from TavUtil.dll:"
        sed 's/^/    /' <<<"$missing"
        status=1
    fi
    echo "$3: $listed in the baseline, $(wc -l <"$2") exported ($added new)"
}
check "$c_list" "$scratch/c" C
check "$cxx_list" "$scratch/cxx" C++
[ $status = 0 ] && echo "every export of the baseline is still exported"
exit $status
