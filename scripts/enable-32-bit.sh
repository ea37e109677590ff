#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Makes the programs of this project run on a kernel that refuses 32-bit programs (built or booted
# without 32-bit emulation): installs QEMU's user mode emulation and has the kernel start it for
# them. Does nothing where they run already. Prints `native` or `emulated`, and fails with a reason
# when neither can be had. Needs g++-multilib. Usage: enable-32-bit.sh
set -eu

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# It prints its kernel's machine: QEMU, which may start it in a system where none is installed, says
# i686 on a kernel of 64 bits as well.
gcc -m32 -x c -o "$folder/program" - <<'END'
#include <stdio.h>
#include <sys/utsname.h>
int main(void) {
    struct utsname kernel;
    return uname(&kernel) != 0 || puts(kernel.machine) < 0;
}
END
runs() { "$folder/program" >"$folder/machine" 2>/dev/null; }

emulator=/usr/bin/qemu-i386-static
formats=/proc/sys/fs/binfmt_misc
name=talvane-i386
if runs; then
    if [ "$(cat "$folder/machine")" = "$(uname -m)" ]; then echo native; else echo emulated; fi
    exit 0
fi

as_root=
[ "$(id -u)" = 0 ] || as_root=sudo
echo 'This kernel runs no 32-bit programs: they are emulated, which is slower.' >&2
if [ ! -x "$emulator" ]; then
    $as_root apt-get update -q >&2 || echo 'warning: apt-get update failed in part' >&2
    $as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -q -y --no-install-recommends qemu-user-static >&2
fi
[ -e "$formats/register" ] || $as_root mount -t binfmt_misc none "$formats" >&2
# An ELF header of class 32, little-endian, type 2 or 3, machine 3. O, P, F: the emulator opens the
# program, sees its own argument 0, and is found in other roots, too.
if [ ! -e "$formats/$name" ]; then
    magic='\x7fELF\x01\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\x03\x00'
    mask='\xff\xff\xff\xff\xff\xfe\xfe\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff'
    printf '%s' ":$name:M::$magic:$mask:$emulator:OPF" |
        $as_root tee "$formats/register" >/dev/null
fi
runs || {
    echo 'enable-32-bit.sh: this kernel runs no 32-bit programs, and emulating them failed' >&2
    exit 1
}
echo emulated
