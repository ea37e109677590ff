#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Downloads the machine's packages, with apt but apart from what apt knows of this computer, so that
# neither root nor a foreign architecture in its configuration is needed. Does nothing when they are
# in the cache. Usage: fetch.sh CACHE
set -eu
cache=$(realpath "$1")
apt=$cache/apt

# Where this computer has its own packages from.
mirror=${VM_MIRROR:-$(apt-get indextargets --format '$(SITE)' 'Codename: bookworm' | head -n 1)}
[ -n "$mirror" ] || { echo 'fetch.sh: no source of Debian 12 is configured; set VM_MIRROR' >&2; exit 1; }
# What runs in the machine, with all that it depends on; mawk is the awk of the library's shell
# command, usr-is-merged stands in for a package that brings perl.
system='usr-is-merged bash dash coreutils mawk grep sed gzip tar util-linux mount procps kmod'
system="$system ncurses-base libstdc++6 libfuse3-3 dmidecode ipmitool pciutils fdisk hdparm strace"
# Taken without what they depend on: a shell for the way to the disk, and the headers that the bridge
# is compiled with.
single='busybox-static libfuse3-dev'
# What the bridge needs as a 64-bit program, beside a 64-bit kernel.
wide='libc6 libgcc-s1 libstdc++6 libfuse3-3'

wanted="$mirror $system $single $wide"
if [ "$(cat "$cache/packages.complete" 2>/dev/null)" = "$wanted" ]; then exit 0; fi

rm -rf "$cache/packages" "$cache/packages64" "$cache/packages.complete"
mkdir -p "$cache/packages" "$cache/packages64"

fail() {
    echo "fetch.sh: $1 from $mirror. Is there a network? A cache folder that was filled elsewhere" \
        "serves as well (VM_CACHE)." >&2
    exit 1
}

# Makes an apt of its own that sees one architecture and no installed package.
start_apt() {
    rm -rf "$apt"
    mkdir -p "$apt/state/lists/partial" "$apt/cache/archives/partial"
    : >"$apt/status"
    echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror bookworm main" \
        >"$apt/sources.list"
    cat >"$apt/apt.conf" <<END
APT::Architecture "$1";
APT::Architectures { "$1"; };
APT::Install-Recommends "false";
APT::Sandbox::User "";
Dir::State "$apt/state";
Dir::State::status "$apt/status";
Dir::Cache "$apt/cache";
Dir::Etc::sourcelist "$apt/sources.list";
Dir::Etc::sourceparts "-";
Acquire::Languages "none";
END
    export APT_CONFIG="$apt/apt.conf"
    apt-get -q update || fail 'cannot read the list of packages'
}

download() {  # FOLDER PACKAGE...
    folder=$1
    shift
    (cd "$folder" && apt-get -q download "$@") || fail "cannot download $*"
}

kernel_of() { apt-cache depends "$1" | sed -n 's/^ *Depends: //p' | head -n 1; }

# shellcheck disable=SC2086  # several words
{
    start_apt i386
    apt-get -q -y --download-only install $system || fail 'cannot download the packages'
    mv "$apt/cache/archives"/*.deb "$cache/packages"
    download "$cache/packages" "$(kernel_of linux-image-686)" $single
    start_apt amd64
    download "$cache/packages64" "$(kernel_of linux-image-amd64)" $wide
} >"$cache/fetch.log"
rm -rf "$apt"
echo "$wanted" >"$cache/packages.complete"
