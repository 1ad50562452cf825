#!/usr/bin/env bash
# `make demo` on a fresh machine installs only the demo's packages (the Makefile's DEMO_PACKAGES) and configures
# a new build folder with the demo's options (DEMO_CONFIGURE). This configures a folder the same way and checks
# that every program and file the configuration requires (the project's find_* calls with REQUIRED, the
# compilers and the build program) comes from those packages, their dependencies, or what a bare Debian has
# (its required packages, and make and git, which fetching the project and calling make take). A required tool
# of another package would stop the demo at its configure step on a fresh machine, as LLVM's dlltool did.
# Usage: check_demo_needs.sh SOURCE_DIR WORK_DIR TOOLCHAIN_FILE
set -eu
source_dir=$(cd "$1" && pwd -P)
work=$2
toolchain=$3

demo=$(make -s -C "$source_dir" print-demo)
packages=$(sed -n 1p <<<"$demo")
configure=$(sed -n 2p <<<"$demo")
[ -n "$packages" ] || { echo "make print-demo gave no packages"; exit 1; }

rm -rf "$work" "$work.trace"
# shellcheck disable=SC2086 # the options are words
if ! cmake -S "$source_dir" -B "$work" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
    $configure --trace-expand --trace-format=json-v1 --trace-redirect="$work.trace" >"$work.log" 2>&1; then
    echo "the demo's configuration failed:"
    tail -20 "$work.log"
    exit 1
fi

# The variables of the project's own required finds (the trace gives each call's arguments, then its file).
required=$(grep -F "\"file\":\"$source_dir/" "$work.trace" | grep -E '"cmd":"find_(program|path|file|library)"' |
    grep -F '"REQUIRED"' | sed -E 's/^\{"args":\["([^"]+)".*/\1/' | sort -u)
variables="$required CMAKE_C_COMPILER CMAKE_CXX_COMPILER CMAKE_RC_COMPILER CMAKE_MAKE_PROGRAM CMAKE_COMMAND"

# A variable's value: from the cache, or, for a compiler the toolchain file names, from the file in which
# CMake records the compiler it found.
value_of() {
    local value
    value=$(grep -E "^$1(:[A-Z]+)?=" "$work/CMakeCache.txt" | head -1 | cut -d= -f2-)
    [ -n "$value" ] || value=$(cat "$work"/CMakeFiles/*/CMake*Compiler.cmake 2>/dev/null |
        sed -n -E "s/^set\($1 \"([^\"]*)\"\)$/\1/p" | head -1)
    echo "$value"
}

# What may provide them: the demo's packages with their dependencies, and a bare Debian's own.
# shellcheck disable=SC2086
allowed=$({
    apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks --no-replaces \
        --no-enhances $packages make git | grep -v '^ ' | tr -d '<>'
    dpkg-query -W -f='${Package} ${Priority}\n' | awk '$2 == "required" { print $1 }'
} | sed 's/:.*//' | sort -u)

failures=0
checked=0
for variable in $variables; do
    value=$(value_of "$variable")
    if [ -z "$value" ] || [ "${value%-NOTFOUND}" != "$value" ]; then
        echo "$variable: not found in the demo's configuration"
        failures=$((failures + 1))
        continue
    fi
    # A bare name (the resource compiler is recorded as the toolchain file gives it) runs from PATH.
    [ "${value#/}" != "$value" ] || value=$(command -v "$value" || echo "$value")
    file=$(readlink -f "$value")
    owner=$(dpkg -S "$file" 2>/dev/null | head -1 | cut -d: -f1 || true)
    if [ -z "$owner" ]; then
        echo "$variable: $file belongs to no package"
        failures=$((failures + 1))
    elif ! grep -qx "$owner" <<<"$allowed"; then
        echo "$variable: $file comes from $owner, which make demo does not install"
        failures=$((failures + 1))
    fi
    checked=$((checked + 1))
done
echo "demo's needs: $checked required files checked, $failures outside the demo's packages"
[ "$failures" -eq 0 ]
