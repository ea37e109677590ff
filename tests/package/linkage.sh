#!/bin/sh
# SPDX-License-Identifier: MIT
#
# What the dynamic linker sees of the built library: its name, that it loads on every 32-bit x86
# Linux since 2006 and in programs of every language, and that an agent can put its own functions in
# front. Usage: linkage.sh LIBRARY
set -u
library=$1
failed=0
fail() {
    echo "$library: $*" >&2
    failed=1
}

header=$(readelf -hW "$library") && dynamic=$(readelf -dW "$library") &&
    segments=$(readelf -lW "$library") &&
    imports=$(nm -D --undefined-only --with-symbol-versions "$library") || exit 2

echo "$header" | grep -q 'Class: *ELF32' || fail 'is not a 32-bit library'
echo "$header" | grep -q 'Machine: *Intel 80386' || fail 'is not for x86'
# Dynamic linkers refuse what extensions they do not know.
echo "$header" | grep -q "OS/ABI: *UNIX - System V" || fail "uses extensions of the GNU system"
echo "$dynamic" | grep -q 'Library soname: \[libTalvane\.so\.1\]' ||
    fail 'its SONAME is not libTalvane.so.1'

# The C library alone: C agents have no C++ runtime library, and old machines no new one.
for name in $(echo "$dynamic" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p'); do
    case $name in
        libc.so.6 | libm.so.6) ;;
        *) fail "needs $name" ;;
    esac
done

# What the library may call, and nothing else: no end of the process but where memory runs out (abort)
# or a buffer was overrun (__stack_chk_fail), no threads, no handlers of signals, no network.
allowed='
    open close lseek read ioctl opendir closedir iopl syscall sysconf times sleep nanosleep
    fopen fclose fgets remove system printf puts perror snprintf sprintf sscanf
    malloc free memcmp memmove strcat strcmp strcpy strlen strncpy strstr strtol strtoll
    __errno_location __cxa_atexit __cxa_finalize abort __stack_chk_fail
    __gmon_start__ __gxx_personality_v0 _ITM_deregisterTMCloneTable _ITM_registerTMCloneTable
    _Unwind_Resume'

# Each import is a symbol that C libraries have had since 2.4, of 2006, or a weak one of the C++
# runtime library, without a version: any will do, and so will none.
while read -r binding symbol; do
    name=${symbol%%@*}
    case " $(echo $allowed) " in
        *" $name "*) ;;
        *) case $name in _Z*) ;; *) fail "imports $name, which it has not needed so far" ;; esac ;;
    esac
    case $symbol in
        *@GLIBC_*)
            version=${symbol##*@GLIBC_}
            [ "$(printf '%s\n2.4\n' "$version" | sort -V | tail -n 1)" = 2.4 ] ||
                fail "imports $symbol, and may use GLIBC_2.4 at most"
            ;;
        *@*) fail "imports $symbol, which not every system has" ;;
        *) [ "$binding" = w ] || fail "imports $symbol, and cannot do without" ;;
    esac

    # The plain calls are the interface to the machine: no variants with 64-bit offsets, no
    # fortified ones. And no arithmetic of 113 digits, which is younger than the machines.
    case $name in
        _Z*) ;;  # of the C++ runtime library
        *f128 | __*tf[0-9]) fail "imports the arithmetic of 113 digits $name" ;;
        *64 | *64_2) fail "imports the 64-bit variant $name" ;;
        __*_chk | __*_2) fail "imports the fortified variant $name" ;;
    esac
done <<END
$imports
END

# A function of which the library keeps the address is looked up whenever an agent starts, the others
# when they are first called. Kept are the virtual methods, and the two by which it tells whether an
# agent has methods of its own.
kept=$(readelf -rW "$library" | sed -nE 's/.* R_386_(32|GLOB_DAT) .* (_Z[0-9A-Za-z_]+)$/\2/p')
for name in $(nm -D --defined-only "$library" | sed -n 's/.* T //p'); do
    case $name in
        _ZN8IPMIbase8IsInitOKEv | _ZN8IPMIbase12InitIpmiBaseEv) ;;
        _ZN7PCIscan2inEt | _ZN7PCIscan3outEtm) ;;
        *) if echo "$kept" | grep -qx "$name"; then fail "looks up $name at each start"; fi ;;
    esac
done

# Dynamic linkers before 2007 know the first kind of hash table alone, later ones prefer the second.
for table in '(HASH)' '(GNU_HASH)'; do
    echo "$dynamic" | grep -qF "$table" || fail "has no table $table"
done

# A definition in the agent, or in a library preloaded to it, comes before the library's own.
if echo "$dynamic" | grep -qw SYMBOLIC; then fail 'is linked with -Bsymbolic'; fi

if echo "$dynamic" | grep -q TEXTREL; then fail 'has text relocations'; fi
echo "$segments" | grep -q GNU_RELRO || fail 'leaves its relocated constants writable'
echo "$segments" | grep GNU_STACK | grep -q ' RW ' || fail 'asks for an executable stack'

# Processors of that time may have no SSE2. xmm registers are in no instruction of older ones.
instruction=$(objdump -d --no-show-raw-insn "$library" | grep -m 1 xmm)
[ -z "$instruction" ] || fail "has an instruction of SSE: $instruction"

stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
strip -o "$stripped" "$library"
size=$(stat -c %s "$stripped")
[ "$size" -le 153600 ] || fail "takes $size bytes stripped, and may take 153600"
exit $failed
