#!/usr/bin/env bash
# The C interface's names agree everywhere: every function the header declares is exported from TavUtil.dll
# under its plain name and listed in the module-definition file, TavUtil.lib lists exactly those, the C++
# interface is still exported beside them, and the C test (or the package test, for tav_version) calls every one.
set -u
objdump=$1 nm=$2 header=$3 def=$4 dll=$5 lib=$6
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# tav_version is declared by util/capi/Version.cpp itself until the header's record named tav_version is renamed
# (C cannot give a type and a function one name); it is then declared in the header and this line goes.
{ grep -o 'TAVUTIL_C_API [^(]*\btav_[a-z0-9_]*(' "$header" | grep -o 'tav_[a-z0-9_]*($' | tr -d '('; echo tav_version; } |
    sort >"$scratch/header"
sed -n 's/^[[:space:]]*tav_/tav_/p' "$def" | awk '{print $1}' | sort >"$scratch/def"
"$objdump" -p "$dll" | sed -n '/Ordinal\/Name Pointer/,/^$/p' >"$scratch/exports"
grep -o '\] tav_[a-z0-9_]*$' "$scratch/exports" | cut -c3- | sort >"$scratch/dll"
"$nm" "$lib" 2>/dev/null | awk '$2 == "T" && $3 !~ /^__imp_/ {print $3}' | sort -u >"$scratch/lib"
cxx=$(grep -c '\] _Z' "$scratch/exports")
tests_dir=$(dirname "$0")

status=0
compare() {
    if ! diff -u "$scratch/header" "$scratch/$1" >"$scratch/diff"; then
        echo "FAIL: the header's functions and $2 differ (- header only, + $2 only):"
        grep "^[-+][^-+]" "$scratch/diff"
        status=1
    fi
}
count=$(wc -l <"$scratch/header")
[ "$count" -gt 0 ] || { echo "FAIL: no function found in $header"; exit 1; }
compare def "the module-definition file"
compare dll "the DLL's exports"
compare lib "TavUtil.lib"
if [ "$cxx" -lt 400 ]; then
    echo "FAIL: only $cxx C++ exports left beside the C interface"
    status=1
fi
while read -r name; do
    if ! grep -qw "$name" "$tests_dir"/*.c "$tests_dir"/../package/*.cpp; then
        echo "FAIL: the C test never calls $name"
        status=1
    fi
done <"$scratch/header"
[ $status = 0 ] && echo "$count C functions: declared, listed, exported and in TavUtil.lib; $cxx C++ exports beside them"
exit $status
