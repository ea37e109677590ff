#!/bin/bash
# SPDX-License-Identifier: MIT
#
# Tries the packages of build/packages (scripts/package.sh) in bare Debian systems: installs them, runs
# the tool and an agent on simulated servers, builds agents against the installed library, looks for
# the man pages, removes everything, and finds nothing left. The systems are:
#   bookworm-i386   Debian 12 with 32 bits: everything
#   bookworm-amd64  Debian 12 with 64 bits and i386 added: everything, the bridge for amd64
#   bullseye-i386   Debian 11 with 32 bits: library and C agents. Tool and bridge need a newer C++
#                   library, and libfuse 3.12.
# Takes root and a network. The bare systems are kept in TRY_CACHE, by default
# ~/.cache/talvane-roots. Usage: try-packages.sh [SYSTEM...]
set -euo pipefail
cd "$(dirname "$0")/.."
cache=${TRY_CACHE:-~/.cache/talvane-roots}
packages=$PWD/build/packages
export PATH=$PATH:/usr/sbin:/sbin LC_ALL=C DEBIAN_FRONTEND=noninteractive
if [ $# -eq 0 ]; then set -- bookworm-i386 bookworm-amd64 bullseye-i386; fi
ls "$packages"/*.deb >/dev/null 2>&1 || {
    echo 'try-packages.sh: no packages; scripts/package.sh builds them' >&2
    exit 1
}
scripts/install-packages.sh package >&2
scripts/enable-32-bit.sh >&2

. scripts/private-apt.sh  # sets $mirror
version=$(dpkg-parsechangelog -S Version)
mkdir -p "$cache"
scratch=$(mktemp -d)
root=
log=
started=$SECONDS

leave() {
    status=$?
    if [ $status != 0 ] && [ -n "$log" ]; then tail -n 30 "$log" >&2; fi
    if [ -n "$root" ] && mountpoint -q "$root/proc"; then umount "$root/proc"; fi
    rm -rf --one-file-system "$scratch"
}
trap leave EXIT

say() { printf '%4d s  %-15s %s\n' $((SECONDS - started)) "$system" "$*"; }
fail() {
    say "FAILED: $*" >&2
    exit 1
}
inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C HOME=/root "$@"; }
# What a step prints is shown when it fails.
quietly() { "$@" >>"$log" 2>&1 || fail "$*"; }
install() { quietly inside env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "$@"; }
# This computer's man looks into the system: its own would first have to list all pages there.
has_page() { man -M "$root/usr/share/man" "$1" "$2" >/dev/null 2>>"$log" || fail "no man page $2($1)"; }
# Every file that is not the system's own record of packages, a cache or a log.
files() {
    (cd "$root" && find . -xdev \( -path ./proc -o -path ./sys -o -path ./tmp -o -path ./root \
        -o -path ./var/cache -o -path ./var/log -o -path ./var/lib/dpkg -o -path ./var/lib/apt \) \
        -prune -o -print | sort)
}

make_system() {  # FOLDER: a bare one
    if [ ! -f "$cache/$system.tar" ]; then
        say 'makes the bare system'
        quietly debootstrap --arch="${system#*-}" --variant=minbase "${system%-*}" "$scratch/new" "$mirror"
        rm -f "$scratch"/new/var/cache/apt/archives/*.deb
        tar -C "$scratch/new" --numeric-owner -cf "$cache/$system.tar.part" .
        mv "$cache/$system.tar.part" "$cache/$system.tar"
        rm -rf "$scratch/new"
    fi
    mkdir "$1"
    tar -C "$1" --numeric-owner -xf "$cache/$system.tar"
    mount -t proc proc "$1/proc"
    # Services are not started in a folder.
    printf '#!/bin/sh\nexit 101\n' >"$1/usr/sbin/policy-rc.d"
    chmod +x "$1/usr/sbin/policy-rc.d"
    mkdir "$1/packages"
    cp "$packages"/*.deb "$packages"/*.tar.gz "$1/packages"
    cp -r examples/agent "$1/root/agent"
    cp -r tests/package/agent-machine "$1/root/agent-machine"
}

# The agent prints what it is to, on the simulated server where that is installed.
agent_prints() {  # PROGRAM: a path in the system
    inside talvane-sim /root/agent-machine -- "$1" >"$scratch/output" 2>>"$log" || fail "$1 fails"
    diff -u tests/package/agent.expected "$scratch/output" >>"$log" || fail "$1 prints something else"
}

# On Debian 11 there is no simulated server. The agent says that this machine has no table, which takes
# a loaded library.
agent_starts() {  # PROGRAM
    inside "$1" >"$scratch/output" 2>&1 && fail "$1 finds a table, though there is no /dev/mem"
    grep -q '^agent: no readable SMBIOS table' "$scratch/output" ||
        fail "$1 does not start: $(cat "$scratch/output")"
}

# The command ends with the status and prints the text.
prints() {  # STATUS TEXT COMMAND...
    local wanted=$1 text=$2 status=0
    shift 2
    inside "$@" >"$scratch/output" 2>>"$log" || status=$?
    [ "$status" = "$wanted" ] || fail "$* ends with status $status"
    grep -q -e "$text" "$scratch/output" || fail "$* does not print '$text'"
}

# Each command of the tool, on bundled machines and, as far as a bare system goes, on this one.
try_commands() {
    local failing='--machine failing-server' full='--machine full-server' command
    # shellcheck disable=SC2086  # an option and its value
    {
        for command in system board cpu memory ports power fans voltages temperatures sensors \
            thresholds watchdog bmc pci drives partitions load; do
            prints 0 . talvane "$command" $full
            prints 0 '"errors": \[\]' talvane "$command" --json $full
        done
        prints 0 'input lost' talvane sensors $failing
        prints 0 '"time":' talvane sensors --watch 1 --count 1 --json $failing
        prints 0 'CPU 1 Temp' talvane sensors --library $failing
        prints 2 '^Health: CRITICAL' talvane health $failing
        prints 2 "^SENSORS CRITICAL - .* | 'CPU 1 Temp'=88;" talvane health --format nagios $failing
        prints 0 'upper critical .*CRITICAL' talvane health --states
        prints 0 '^ipmi_temperature_celsius{.*name="CPU 1 Temp"} 88$' talvane metrics $failing
        prints 0 '^KB-27 Mainboard$' talvane get board.product $full
        prints 1 '^  Timeout  0.0 s' talvane watchdog set --action hard-reset --timeout 60 $full
        prints 0 '^  Timeout  60.0 s' talvane watchdog set --action hard-reset --timeout 60 --yes $full
        prints 1 '^Thresholds to be written' talvane threshold set --entity processor \
            --type temperature --which upper-critical 90 $full
        inside talvane report --html /tmp/page.html $full 2>>"$log" || fail 'no page'
        prints 0 'KB-27 Mainboard' cat /tmp/page.html
        inside talvane capture /tmp/box.tar.gz --redact $full 2>>"$log" || fail 'no capture'
        prints 0 'XXXXXXXXXXXX' talvane board --machine /tmp/box.tar.gz
    }
    prints 1 '"schema": 1' talvane doctor --json
    prints 1 '^  Processor 1 ' talvane load  # a bare system lacks the program free
    inside rm -f /tmp/page.html /tmp/box.tar.gz
    say 'each command of the tool answers'
}

try_system() {
    local check=agent_prints names="libtalvane1 talvane" development='gcc libc6-dev make pkg-config cmake'
    local bridge=${system#*-} flag=
    case $system in
        bullseye-*) check=agent_starts names=libtalvane1 bridge= ;;
        *-amd64)
            development="${development/gcc/gcc gcc-multilib}"
            flag=-m32
            quietly inside dpkg --add-architecture i386
            ;;
    esac
    quietly inside apt-get update -q
    files >"$scratch/before"
    inside dpkg-query -W -f '${Package}:${Architecture}\n' | sort >"$scratch/packages-before"

    local -a debs=()
    local name
    for name in $names; do debs+=("/packages/${name}_${version}_i386.deb"); done
    if [ -n "$bridge" ]; then debs+=("/packages/talvane-ipmi-bridge_${version}_$bridge.deb"); fi
    install "${debs[@]}"
    say "installed: ${debs[*]##*/}"

    if [ "$check" = agent_prints ]; then
        inside talvane report --machine full-server >"$scratch/report" 2>>"$log" || fail 'the report fails'
        grep -q 'KB-27 Mainboard' "$scratch/report" || fail 'the report lacks the board'
        [ "$(inside talvane --version)" = "talvane $version" ] || fail 'talvane --version'
        [ "$(inside talvane-sim --version)" = "talvane-sim $version" ] || fail 'talvane-sim --version'
        [ "$(inside talvane-ipmi-bridge --version)" = "$version" ] || fail 'talvane-ipmi-bridge --version'
        inside test -f /lib/systemd/system/talvane-ipmi-bridge.service || fail 'no service unit'
        inside test -f /lib/systemd/system/talvane-metrics.timer || fail 'no timer'
        inside test -f /usr/share/bash-completion/completions/talvane || fail 'no completion'
        has_page 1 talvane
        has_page 1 talvane-sim
        has_page 1 talvane-host
        has_page 5 talvane-machine
        has_page 8 talvane-ipmi-bridge
        say "talvane report --machine full-server: $(wc -l <"$scratch/report") lines; man pages are there"
        try_commands
    else
        # Their dependencies are not met here, and apt says so.
        inside apt-get install -s "/packages/talvane_${version}_i386.deb" >"$scratch/output" 2>&1 &&
            fail 'the tool can be installed, against what is documented'
        say "the tool is refused: $(sed -n 's/.*Depends: \(libstdc++6.*\) but.*/needs \1/p' "$scratch/output" | head -n 1)"
    fi

    # shellcheck disable=SC2086  # several words
    install $development "/packages/libtalvane-dev_${version}_i386.deb"
    has_page 3 talvane
    quietly inside env PKG_CONFIG_PATH=/usr/lib/i386-linux-gnu/pkgconfig make -C /root/agent
    $check /root/agent/agent
    say 'an agent built with pkg-config runs'
    # The example asks for a newer CMake than Debian 11 has; what it uses is older.
    sed -i 's/^cmake_minimum_required.*/cmake_minimum_required(VERSION 3.13)/' "$root/root/agent/CMakeLists.txt"
    quietly inside env CFLAGS="$flag" cmake -S /root/agent -B /root/agent-cmake
    quietly inside cmake --build /root/agent-cmake
    $check /root/agent-cmake/agent
    say 'an agent built with CMake runs'

    quietly inside apt-get purge -q -y 'libtalvane*' 'talvane*'
    quietly inside apt-get purge -q -y --autoremove
    inside dpkg-query -W -f '${Package}:${Architecture}\n' | sort |
        comm -13 "$scratch/packages-before" - | grep talvane && fail 'a package is left'
    files | comm -13 "$scratch/before" - | grep -i talvane && fail 'a file is left'
    say 'removed; nothing is left'

    # The archive for other distributions, unpacked anywhere.
    inside tar -C /root -xzf "/packages/talvane-$version-linux-i686.tar.gz"
    rm -f "$root/root/agent/agent"
    quietly inside env PKG_CONFIG_PATH="/root/talvane-$version-linux-i686/lib/pkgconfig" make -C /root/agent
    inside env LD_LIBRARY_PATH="/root/talvane-$version-linux-i686/lib" /root/agent/agent \
        >"$scratch/output" 2>&1 && fail 'the agent finds a table, though there is no /dev/mem'
    grep -q '^agent: no readable SMBIOS table' "$scratch/output" || fail "the agent does not start"
    say 'an agent built with the archive starts'
}

for system in "$@"; do
    root=$scratch/$system
    log=$scratch/$system.log
    : >"$log"
    make_system "$root"
    try_system
    umount "$root/proc"
    rm -rf --one-file-system "$root"
    root=
done
echo 'All systems: as they should be.'
