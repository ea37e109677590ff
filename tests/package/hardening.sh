#!/bin/sh
# SPDX-License-Identifier: MIT
#
# How the built programs and libraries are protected against attacks through memory.
# Usage: hardening.sh library|program|fortified FILE
#   library    libTalvane.so: binds its functions when they are called, and has no marks of control
#              flow of its own
#   program    a program, or the library that it preloads
#   fortified  a program that makes the C library's calls with a check of the buffer, as well
set -u
kind=$1
file=$2
failed=0
fail() {
    echo "$file: $*" >&2
    failed=1
}

header=$(readelf -hW "$file") && dynamic=$(readelf -dW "$file") &&
    segments=$(readelf -lW "$file") &&
    imports=$(nm -D --undefined-only --without-symbol-versions "$file") || exit 2

# has TEXT PATTERN COMPLAINT
has() {
    echo "$1" | grep -Eq "$2" || fail "$3"
}
has "$header" 'Type: *DYN' 'is loaded at a fixed address'
has "$segments" 'GNU_RELRO' 'leaves its relocated constants writable'
has "$segments" 'GNU_STACK.* RW ' 'asks for an executable stack'
has "$imports" '__stack_chk_fail' 'does not watch the return addresses of its functions'
if echo "$dynamic" | grep -q TEXTREL; then fail 'has text relocations'; fi
if echo "$segments" | grep -q 'LOAD.* RWE '; then fail 'has a segment to write and to run'; fi

if [ "$kind" = library ]; then
    # Kept: binding at the start would double what loading the library costs an agent.
    if echo "$dynamic" | grep -q BIND_NOW; then fail 'binds all functions at the start'; fi
else
    has "$dynamic" 'BIND_NOW' 'leaves the addresses of its functions writable'
    # What the compiler adds to every program has a few dozen of its own.
    marks=$(objdump -d --no-show-raw-insn "$file" | grep -Ec 'endbr(32|64)')
    [ "$marks" -ge 100 ] || fail "has $marks marks of control flow"
fi

case $kind in
    fortified) has "$imports" '__[a-z]*_chk$' 'makes no call with a check of the buffer' ;;
    *)
        # The simulated server answers the plain calls.
        checked=$(echo "$imports" | grep -oE '__(open|openat)(64)?_2$|__(read|lseek|ioctl)_chk$')
        [ -z "$checked" ] || fail "makes the fortified call $checked"
        ;;
esac
exit $failed
