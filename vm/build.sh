#!/bin/bash
# SPDX-License-Identifier: MIT
#
# Makes the machine's kernel, initial file system and root disk from the downloaded packages. Needs
# no root: packages are unpacked, not installed, and mke2fs fills the disk from a folder.
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
mkdir -p "$machine/kernel" "$machine/sysroot"
root=$machine/root

unpack() {  # PACKAGE FOLDER [NAME...]
    package=$(ls "$cache/packages/$1"_*.deb)
    folder=$2
    shift 2
    dpkg-deb --fsys-tarfile "$package" |
        tar -x --keep-directory-symlink -C "$folder" --exclude='./usr/share/doc' \
            --exclude='./usr/share/man' --exclude='./usr/share/locale' "$@"
}

# The root: programs below /usr, with the links of a merged system in place before the packages.
mkdir -p "$root/usr/bin" "$root/usr/sbin" "$root/usr/lib" "$root/proc" "$root/sys" "$root/dev" \
    "$root/tmp" "$root/root" "$root/payload"
for folder in bin sbin lib; do ln -s "usr/$folder" "$root/$folder"; done
for package in "$cache"/packages/*.deb; do
    name=$(basename "$package")
    name=${name%%_*}
    case $name in
        linux-image-* | busybox-static | libfuse3-dev) ;;
        *) unpack "$name" "$root" ;;
    esac
done
ln -sf mawk "$root/usr/bin/awk"    # both made by maintainer scripts otherwise
ln -sf dash "$root/usr/bin/sh"
echo 'root:x:0:0:root:/root:/bin/bash' >"$root/etc/passwd"
echo 'root:x:0:' >"$root/etc/group"
install -m 755 machine-start "$root/usr/sbin/machine-start"

# What the bridge is compiled and linked with.
unpack libfuse3-dev "$machine/sysroot"
unpack libfuse3-3 "$machine/sysroot"
libraries=lib/i386-linux-gnu  # the link to the library leads out of the folder
ln -sf "../../../$libraries/libfuse3.so.3" "$machine/sysroot/usr/$libraries/libfuse3.so"

# The kernel and its modules: those wanted, with all that they need.
unpack "$(basename "$cache"/packages/linux-image-*.deb | sed 's/_.*//')" "$machine/kernel"
mv "$machine"/kernel/boot/vmlinuz-* "$machine/vmlinuz"
release=$(ls "$machine/kernel/lib/modules")
all=$machine/kernel/lib/modules/$release
depmod -b "$machine/kernel" "$release"
grep -v '^#' modules.txt | while read -r module; do
    modprobe -d "$machine/kernel" -S "$release" --show-depends "$module"
done | sed -n "s|^insmod .*/lib/modules/$release/\\([^ ]*\\).*|\\1|p" | sort -u >"$machine/modules"
copy_modules() {
    mkdir -p "$1/lib/modules/$release"
    (cd "$all" && tar -c -T "$machine/modules" modules.builtin modules.builtin.modinfo \
        modules.order) | tar -x -C "$1/lib/modules/$release"
    depmod -b "$1" "$release"
}
copy_modules "$root"

# The way to the disk.
initramfs=$machine/initramfs
mkdir -p "$initramfs/bin" "$initramfs/sbin" "$initramfs/dev" "$initramfs/proc" "$initramfs/sys" \
    "$initramfs/root"
unpack busybox-static "$machine/kernel"
cp "$(find "$machine/kernel" -path '*bin/busybox')" "$initramfs/bin/busybox"
for name in sh mount umount modprobe sleep switch_root readlink basename ln; do
    ln -s busybox "$initramfs/bin/$name"
done
copy_modules "$initramfs"
install -m 755 initramfs-init "$initramfs/init"
(cd "$initramfs" && find . | cpio --quiet -o -H newc -R 0:0 | gzip -1) >"$machine/initrd"

size=$(($(du -sm "$root" | cut -f 1) + 100))
mke2fs -q -t ext4 -E root_owner=0:0 -O ^has_journal -d "$root" "$machine/root.img" "${size}M"
rm -rf "$root" "$machine/kernel" "$initramfs" "$machine/modules"
echo "$version" >"$machine/complete"
