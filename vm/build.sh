#!/bin/bash
# SPDX-License-Identifier: MIT
#
# Makes the machine's kernels, initial file systems, firmware and root disk from the downloaded
# packages. Needs no root: packages are unpacked, not installed, and mke2fs fills the disk from a folder.
# Usage: build.sh CACHE
set -euo pipefail
cd "$(dirname "$0")"
cache=$(realpath "$1")
machine=$cache/machine
PATH=$PATH:/usr/sbin:/sbin

version=$(cat build.sh modules.txt initramfs-init machine-start "$cache/packages.complete" |
    sha256sum)
if [ "$(cat "$machine/complete" 2>/dev/null)" = "$version" ]; then exit 0; fi
rm -rf "$machine"
root=$machine/root
mkdir -p "$machine/sysroot" "$machine/busybox"

unpack() {  # PACKAGE FOLDER
    dpkg-deb --fsys-tarfile "$1" |
        tar -x --keep-directory-symlink -C "$2" --exclude='./usr/share/doc' \
            --exclude='./usr/share/man' --exclude='./usr/share/locale'
}

# The root: programs below /usr, with the links of a merged system in place before the packages. The
# libraries of both widths have folders of their own.
mkdir -p "$root"/usr/{bin,sbin,lib,lib64} "$root"/{proc,sys,dev,tmp,root,payload}
for folder in bin sbin lib lib64; do ln -s "usr/$folder" "$root/$folder"; done
for package in "$cache"/packages/*.deb "$cache"/packages64/lib*.deb; do
    case $(basename "$package") in
        linux-image-* | busybox-static_* | libfuse3-dev_*) ;;
        *) unpack "$package" "$root" ;;
    esac
done
ln -sf mawk "$root/usr/bin/awk"    # both made by maintainer scripts otherwise
ln -sf dash "$root/usr/bin/sh"
echo 'root:x:0:0:root:/root:/bin/bash' >"$root/etc/passwd"
echo 'root:x:0:' >"$root/etc/group"
# The bridge's user, whom its package makes elsewhere.
echo 'talvane-ipmi:x:990:990::/:/usr/sbin/nologin' >>"$root/etc/passwd"
echo 'talvane-ipmi:x:990:' >>"$root/etc/group"
install -m 755 machine-start "$root/usr/sbin/machine-start"

# What the 32-bit bridge is compiled and linked with.
unpack "$cache"/packages/libfuse3-dev_*.deb "$machine/sysroot"
unpack "$cache"/packages/libfuse3-3_*.deb "$machine/sysroot"
libraries=lib/i386-linux-gnu  # the link to the library leads out of the folder
ln -sf "../../../$libraries/libfuse3.so.3" "$machine/sysroot/usr/$libraries/libfuse3.so"

unpack "$cache"/packages/busybox-static_*.deb "$machine/busybox"
busybox=$(find "$machine/busybox" -path '*bin/busybox')

# A kernel with those of its modules that are wanted and all that they need, in the root and on the
# way to it.
add_kernel() {  # PACKAGE NAME
    local kernel=$machine/kernel initramfs=$machine/initramfs release
    rm -rf "$kernel" "$initramfs"
    mkdir -p "$kernel" "$initramfs"/{bin,sbin,dev,proc,sys,root}
    unpack "$1" "$kernel"
    mv "$kernel"/boot/vmlinuz-* "$machine/vmlinuz$2"
    release=$(ls "$kernel/lib/modules")
    depmod -b "$kernel" "$release"
    grep -v '^#' modules.txt | while read -r module; do
        modprobe -d "$kernel" -S "$release" --show-depends "$module"
    done | sed -n "s|^insmod .*/lib/modules/$release/\\([^ ]*\\).*|\\1|p" | sort -u \
        >"$machine/modules"

    cp "$busybox" "$initramfs/bin/busybox"
    for name in sh mount umount modprobe sleep switch_root readlink basename ln; do
        ln -s busybox "$initramfs/bin/$name"
    done
    install -m 755 initramfs-init "$initramfs/init"
    for target in "$root" "$initramfs"; do
        mkdir -p "$target/lib/modules/$release"
        tar -c -C "$kernel/lib/modules/$release" -T "$machine/modules" modules.builtin \
            modules.builtin.modinfo modules.order | tar -x -C "$target/lib/modules/$release"
        depmod -b "$target" "$release"
    done
    (cd "$initramfs" && find . | cpio --quiet -o -H newc -R 0:0 | gzip -1) >"$machine/initrd$2"
    rm -rf "$kernel" "$initramfs" "$machine/modules"
}
add_kernel "$cache"/packages/linux-image-*.deb 32
add_kernel "$cache"/packages64/linux-image-*.deb 64

# The firmware that boots by UEFI, and its variables.
mkdir "$machine/ovmf"
unpack "$cache"/packages64/ovmf_*.deb "$machine/ovmf"
mv "$machine"/ovmf/usr/share/OVMF/OVMF_{CODE,VARS}_4M.fd "$machine"
rm -rf "$machine/ovmf"

size=$(($(du -sm "$root" | cut -f 1) + 100))
mke2fs -q -t ext4 -E root_owner=0:0 -O ^has_journal -d "$root" "$machine/root.img" "${size}M" >/dev/null
rm -rf "$root" "$machine/busybox"
echo "$version" >"$machine/complete"
