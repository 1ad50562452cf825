#!/usr/bin/env bash
# The DLL's C++ exports are its public line: once a host links a name, it can never be taken away. Helpers
# private to an area live in a `tav::<area>::detail` namespace and are never exported: this fails on any
# exported name from a `detail` namespace, and prints how many C++ names the DLL exports.
set -u
objdump=$1 cxxfilt=$2 dll=$3
names=$("$objdump" -p "$dll" | sed -n '/Ordinal\/Name Pointer/,/^$/p' | grep -o '\] _Z[A-Za-z0-9_]*$' | cut -c3-)
count=$(echo "$names" | grep -c .)
[ "$count" -gt 0 ] || { echo "FAIL: no C++ export found in $dll"; exit 1; }
# The name itself, not its parameter or template argument types (an owner type's policy may live in a
# detail namespace of a public header): the text before the parameters, with template arguments removed.
own_names=$(echo "$names" | "$cxxfilt" | sed -E 's/^(vtable|typeinfo|typeinfo name|VTT|construction vtable) for //; s/\(.*$//' |
    sed -E ':a; s/<[^<>]*>//g; ta')
detail=$(echo "$own_names" | grep -E '(^|[^A-Za-z0-9_])detail::')
if [ -n "$detail" ]; then
    echo "FAIL: names from a detail namespace are exported:"
    echo "$detail"
    exit 1
fi
echo "public line: $count C++ exports, none from a detail namespace"
