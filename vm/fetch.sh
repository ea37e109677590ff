#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Downloads the machine's packages. It uses apt with a configuration of its own, so that it needs
# neither root nor a foreign architecture on this computer. When the packages are in the cache, it does
# nothing and needs no network. What an interrupted run left is downloaded again.
# VM_MIRROR names the archive. The default is the one that this computer gets its packages from.
# Usage: fetch.sh CACHE
set -eu
export LC_ALL=C  # apt's words are read below
cache=$(realpath "$1")
apt=$cache/apt

# What runs in the machine, with all that it depends on; mawk is the awk of the library's shell
# command, usr-is-merged stands in for a package that brings perl.
system='usr-is-merged bash dash coreutils mawk grep sed gzip tar util-linux mount procps kmod'
system="$system libc-bin ncurses-base libstdc++6 libfuse3-3 dmidecode ipmitool pciutils fdisk hdparm strace"
# Taken without what they depend on: a shell for the way to the disk, and the headers that the bridge
# is compiled with.
single='busybox-static libfuse3-dev'
# What the bridge needs as a 64-bit program, beside a 64-bit kernel.
wide='libc6 libgcc-s1 libstdc++6 libfuse3-3'
# The firmware of the machine that boots by UEFI.
firmware='ovmf'

wanted="$system / $single / $wide / $firmware"
if [ "$(cat "$cache/packages.complete" 2>/dev/null)" = "$wanted" ]; then exit 0; fi

# shellcheck source=scripts/private-apt.sh
. "$(dirname "$0")/../scripts/private-apt.sh"
# The machine made of other packages goes with them.
rm -rf "$cache/packages" "$cache/packages64" "$cache/packages.complete" "$cache/machine"
mkdir -p "$cache/packages" "$cache/packages64"

fail() {
    sed -n '/^E: /p' "$cache/fetch.log" >&3
    echo "fetch.sh: $1 from $mirror. Is there a network? A cache folder that was filled elsewhere" \
        "serves as well (VM_CACHE)." >&3
    exit 1
}

download() {  # FOLDER PACKAGE...
    folder=$1
    shift
    (cd "$folder" && apt-get -q download "$@") || fail "cannot download $*"
}

kernel_of() { apt-cache depends "$1" | sed -n 's/^ *Depends: //p' | head -n 1; }

exec 3>&2
# shellcheck disable=SC2086  # several words
{
    start_apt "$apt" i386 || fail 'cannot read the list of packages'
    apt-get -q -y --download-only install $system || fail "cannot download $system"
    mv "$apt/cache/archives"/*.deb "$cache/packages"
    download "$cache/packages" "$(kernel_of linux-image-686)" $single
    start_apt "$apt" amd64 || fail 'cannot read the list of packages'
    download "$cache/packages64" "$(kernel_of linux-image-amd64)" $wide $firmware
} >"$cache/fetch.log" 2>&1
rm -rf "$apt"
echo "$wanted" >"$cache/packages.complete"
