#!/bin/sh
# SPDX-License-Identifier: MIT
#
# What the dynamic linker sees of the library: its name, what it needs, and that an agent can put
# its own functions in front. Usage: linkage.sh LIBRARY
set -u
library=$1
failed=0
fail() {
    echo "$library: $*" >&2
    failed=1
}

dynamic=$(readelf -dW "$library") || exit 2
imports=$(nm -D --undefined-only "$library" | sed 's/^ *[Uw] //; s/@.*//') || exit 2

readelf -hW "$library" | grep -q 'Class: *ELF32' || fail 'is not a 32-bit library'
readelf -hW "$library" | grep -q 'Machine: *Intel 80386' || fail 'is not for x86'
echo "$dynamic" | grep -q 'Library soname: \[libTalvane\.so\.1\]' ||
    fail 'its SONAME is not libTalvane.so.1'

needed=$(echo "$dynamic" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
for name in $needed; do
    case $name in
        libstdc++.so.6 | libgcc_s.so.1 | libc.so.6 | libm.so.6 | ld-linux.so.2) ;;
        *) fail "needs $name" ;;
    esac
done

# A definition in the agent, or in a library preloaded to it, comes before the library's own.
if echo "$dynamic" | grep -qw SYMBOLIC; then fail 'is linked with -Bsymbolic'; fi
if echo "$dynamic" | grep -q TEXTREL; then fail 'has text relocations'; fi

# Old machines have old C libraries.
newest=$(nm -D --with-symbol-versions "$library" | sed -n 's/.*@GLIBC_\([0-9.]*\)$/\1/p' |
    sort -uV | tail -n 1)
[ "$(printf '%s\n2.7\n' "$newest" | sort -V | tail -n 1)" = 2.7 ] ||
    fail "needs GLIBC_$newest, and may need GLIBC_2.7 at most"

# The plain calls are the interface to the machine: no variants with 64-bit offsets, no fortified
# ones. Nor arithmetic of 113 digits, which the C library has since 2.26 and libgcc since 4.4.
for import in $imports; do
    case $import in
        _Z*) ;;  # of the C++ library
        *f128 | __*tf[0-9]) fail "imports the arithmetic of 113 digits $import" ;;
        *64 | *64_2) fail "imports the 64-bit variant $import" ;;
        __*_chk | __*_2) fail "imports the fortified variant $import" ;;
    esac
done
exit $failed
