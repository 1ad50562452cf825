#!/usr/bin/env bash
# The C interface's names agree everywhere: every function the area headers (util/capi/c/*.h) declare is
# exported from TavUtil.dll under its plain name and listed in the module-definition file, TavUtil.lib lists
# exactly those, and the C++ interface is still exported beside them. Each name says where it lives: a
# function of c/<area>.h is named for that area (tav_<area prefix>_...), its body is in util/capi/<Area>.cpp
# and its test, tests/capi/<Area>Test.c, calls it (the area's name matched without regard to case).
set -u
objdump=$1 nm=$2 headers=$3 def=$4 dll=$5 lib=$6
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
tests_dir=$(dirname "$0")
sources_dir=$(dirname "$headers")

declared() { grep -o 'TAVUTIL_C_API [^(]*\btav_[a-z0-9_]*(' "$@" | grep -o 'tav_[a-z0-9_]*($' | tr -d '('; }
declared "$headers"/*.h | sort >"$scratch/header"
sed -n 's/^[[:space:]]*tav_/tav_/p' "$def" | awk '{print $1}' | sort >"$scratch/def"
"$objdump" -p "$dll" | sed -n '/Ordinal\/Name Pointer/,/^$/p' >"$scratch/exports"
grep -o '\] tav_[a-z0-9_]*$' "$scratch/exports" | cut -c3- | sort >"$scratch/dll"
"$nm" "$lib" 2>/dev/null | awk '$2 == "T" && $3 !~ /^__imp_/ {print $3}' | sort -u >"$scratch/lib"
cxx=$(grep -c '\] _Z' "$scratch/exports")

status=0
compare() {
    if ! diff -u "$scratch/header" "$scratch/$1" >"$scratch/diff"; then
        echo "FAIL: the headers' functions and $2 differ (- headers only, + $2 only):"
        grep "^[-+][^-+]" "$scratch/diff"
        status=1
    fi
}
count=$(wc -l <"$scratch/header")
[ "$count" -gt 0 ] || { echo "FAIL: no function found in $headers"; exit 1; }
compare def "the module-definition file"
compare dll "the DLL's exports"
compare lib "TavUtil.lib"
if [ "$cxx" -lt 400 ]; then
    echo "FAIL: only $cxx C++ exports left beside the C interface"
    status=1
fi

# The prefixes each area header's functions may have.
prefixes() {
    case $1 in
    common) echo "tav_c_ tav_result_ tav_version" ;;
    strings) echo tav_string_ ;;
    keys) echo "tav_send_ tav_keys_" ;;
    windows) echo tav_window_ ;;
    waits) echo tav_wait_ ;;
    sounds) echo tav_sound_ ;;
    pickers) echo tav_picker_ ;;
    processes) echo tav_process_ ;;
    paths) echo tav_path_ ;;
    versions) echo "tav_version_ tav_verinfo_" ;;
    accounts) echo tav_account_ ;;
    *) echo "tav_$1_" ;;
    esac
}
for header in "$headers"/*.h; do
    area=$(basename "$header" .h)
    source=$(find "$sources_dir" -maxdepth 1 -iname "$area.cpp" | head -1)
    test=$(find "$tests_dir" -maxdepth 1 -iname "${area}Test.c" | head -1)
    [ -n "$source" ] || { echo "FAIL: c/$area.h has no util/capi/<Area>.cpp"; status=1; }
    [ -n "$test" ] || { echo "FAIL: c/$area.h has no tests/capi/<Area>Test.c"; status=1; }
    for name in $(declared "$header"); do
        fits=0
        for prefix in $(prefixes "$area"); do
            case $name in "$prefix"*) fits=1 ;; esac
        done
        [ $fits = 1 ] || { echo "FAIL: $name is declared in c/$area.h but not named for that area"; status=1; }
        if [ -n "$source" ] && ! grep -q "^[a-z_0-9]* *\*\? *\b$name(" "$source"; then
            echo "FAIL: $name is not defined in $(basename "$source")"
            status=1
        fi
        if [ -n "$test" ] && ! grep -qw "$name" "$test"; then
            echo "FAIL: $(basename "$test") never calls $name"
            status=1
        fi
    done
done
# Every named constant of the headers is used by the C test of the constants.
for constant in $(grep -ohE '^\s+TAV_[A-Z0-9_]+ =' "$headers"/*.h | awk '{print $1}'); do
    if ! grep -qw "$constant" "$tests_dir/ConstantsTest.c"; then
        echo "FAIL: ConstantsTest.c does not use $constant"
        status=1
    fi
done
[ $status = 0 ] && echo "$count C functions: declared, named for their area, defined and tested under its name, listed, exported and in TavUtil.lib; $cxx C++ exports beside them"
exit $status
