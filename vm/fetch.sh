#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Downloads the machine's packages, with apt but apart from what apt knows of this computer, so that
# neither root nor a foreign architecture in its configuration is needed. Does nothing when they are
# in the cache. Usage: fetch.sh CACHE
set -eu
cache=$(realpath "$1")
apt=$cache/apt

mirror=${VM_MIRROR:-http://deb.debian.org/debian}
# What runs in the machine, with all that it depends on; mawk is the awk of the library's shell
# command, usr-is-merged stands in for a package that brings perl.
system='usr-is-merged bash dash coreutils mawk grep sed gzip tar util-linux mount procps
    kmod ncurses-base libstdc++6 libfuse3-3 dmidecode ipmitool pciutils fdisk hdparm strace'
# Taken without what they depend on: the kernel, a shell for the way to the disk, and the headers
# that the bridge is compiled with.
single='busybox-static libfuse3-dev'

wanted=$(echo "$mirror" $system $single)
if [ "$(cat "$cache/packages.complete" 2>/dev/null)" = "$wanted" ]; then exit 0; fi

rm -rf "$apt" "$cache/packages" "$cache/packages.complete"
mkdir -p "$apt/state/lists/partial" "$apt/cache/archives/partial" "$cache/packages"
: >"$apt/status"
echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror bookworm main" \
    >"$apt/sources.list"
cat >"$apt/apt.conf" <<END
APT::Architecture "i386";
APT::Architectures { "i386"; };
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

fail() {
    echo "fetch.sh: $1 from $mirror. Is there a network? A cache folder that was filled elsewhere" \
        "serves as well (VM_CACHE)." >&2
    exit 1
}
{
    apt-get -q update || fail 'cannot read the list of packages'
    # shellcheck disable=SC2086  # several words
    apt-get -q -y --download-only install $system || fail 'cannot download the packages'
    kernel=$(apt-cache depends linux-image-686 | sed -n 's/^ *Depends: //p' | head -n 1)
    # shellcheck disable=SC2086
    (cd "$cache/packages" && apt-get -q download "$kernel" $single) ||
        fail 'cannot download the kernel'
} >"$cache/fetch.log"
mv "$apt/cache/archives"/*.deb "$cache/packages"
rm -rf "$apt"
echo "$wanted" >"$cache/packages.complete"
