#!/bin/sh
# SPDX-License-Identifier: MIT
#
# A fresh prefix holds all that an agent needs: the example agent builds on it with CMake and with
# pkg-config and nothing else, and runs with what was installed beside the library.
# Usage: install.sh SOURCE_DIR BUILD_DIR CMAKE
set -u
source=$1 build=$2 cmake=$3
. "$(dirname "$0")/scratch.sh"

# Installed in one place and used from another: nothing may remember where it was put first.
"$cmake" --install "$build" --prefix "$work/first" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
mv "$work/first" "$work/prefix"
prefix=$work/prefix
cp -r "$source/examples/agent" "$work/agent"

version=$(sed -n 's/^project(Talvane VERSION \([0-9.]*\).*/\1/p' "$source/CMakeLists.txt")
[ -f "$prefix/lib/libTalvane.so.$version" ] || fail "no lib/libTalvane.so.$version"
[ "$(readlink "$prefix/lib/libTalvane.so.${version%%.*}")" = "libTalvane.so.$version" ] ||
    fail 'the link that the SONAME names does not lead to the library'
if grep -rl "$source\|$build\|$work/first" "$prefix/lib/cmake" "$prefix/lib/pkgconfig"; then
    fail 'package files name the folders they were made in'
fi

# builds WHAT COMMAND...: prints the command's output when it fails
builds() {
    what=$1
    shift
    "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "the agent does not build with $what"; }
}
# shellcheck disable=SC2317  # called by builds
with_cmake() {
    env CFLAGS=-m32 "$cmake" -S "$work/agent" -B "$work/cmake-build" \
        -DCMAKE_PREFIX_PATH="$prefix" && "$cmake" --build "$work/cmake-build"
}
builds CMake with_cmake
builds pkg-config env PKG_CONFIG_PATH="$prefix/lib/pkgconfig" make -C "$work/agent"

[ "$(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --modversion talvane)" = "$version" ] ||
    fail 'pkg-config knows another version'

# prints_the_machine PROGRAM [LIBRARY_PATH]
prints_the_machine() {
    LD_LIBRARY_PATH=${2-} "$prefix/bin/talvane-sim" "$source/tests/package/agent-machine" -- "$1" \
        >"$work/output" 2>&1 || fail "$1 fails: $(cat "$work/output")"
    diff -u "$source/tests/package/agent.expected" "$work/output" >&2 ||
        fail "$1 does not print what is expected"
}
prints_the_machine "$work/cmake-build/agent"
prints_the_machine "$work/agent/agent" "$prefix/lib"

# The programs know their version, and an installed machine by its name, unless a folder here has it.
[ "$("$prefix/bin/talvane-sim" --version)" = "talvane-sim $version" ] ||
    fail 'talvane-sim knows another version'
mkdir "$work/here"
cd "$work/here" || exit 2
"$prefix/bin/talvane" board --machine full-server >"$work/output" 2>&1
grep -q 'KB-27 Mainboard' "$work/output" || fail "no machine full-server: $(cat "$work/output")"
cp -r "$source/machines/no-smbios" full-server
"$prefix/bin/talvane" board --machine full-server >"$work/output" 2>&1 &&
    fail 'an installed machine goes before a folder here'
"$prefix/bin/talvane" board --machine ./qemu-small >"$work/output" 2>&1 &&
    fail 'a path is taken for the name of an installed machine'

# The library cannot serve a 64-bit agent, which is to learn that before it links.
if "$cmake" -S "$work/agent" -B "$work/wide" -DCMAKE_C_FLAGS=-m64 \
    -DCMAKE_PREFIX_PATH="$prefix" >"$work/log" 2>&1; then
    fail 'a 64-bit agent is not refused'
elif ! grep -q 'libTalvane is a 32-bit x86 library' "$work/log"; then
    cat "$work/log" >&2
    fail 'a 64-bit agent is refused without saying why'
fi
exit $failed
