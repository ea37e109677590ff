#!/bin/bash
# SPDX-License-Identifier: MIT
#
# Boots an emulated 32-bit machine, once with a kernel that refuses physical memory and once with one
# that allows it, lets the library read all that is in it, and compares with what dmidecode, lspci,
# ipmitool, fdisk, hdparm, top and free read there; then boots it with a 64-bit kernel and compares
# that with the first. At last it boots a machine of today, with UEFI, SATA and NVMe, where everything is
# read through the kernel's own interfaces, and compares that with the same tools and lsblk. Prints one
# table; fails when a difference is not one that docs/kernels.md or docs/behaviour.md explains.
#
# With "speed", the library is also timed beside those tools, and docs/performance.md's tables are
# printed. Downloads are kept in VM_CACHE, by default ~/.cache/talvane-vm; with all of them there, no
# network is needed. VM_RESULTS names a folder to keep what the machines answered.
# Ends with status 77 when the packages cannot be had, with 1 when anything else fails.
# Usage: vm-test.sh [speed]
set -euo pipefail
cd "$(dirname "$0")/.."
case "$*" in '' | speed) ;; *) echo 'usage: vm-test.sh [speed]' >&2; exit 2 ;; esac
cache=${VM_CACHE:-~/.cache/talvane-vm}
export PATH=$PATH:/usr/sbin:/sbin PYTHONDONTWRITEBYTECODE=1

started=$SECONDS
step() {
    printf '%4d s  %s\n' $((SECONDS - started)) "$1" >&2
}

scripts/install-packages.sh vm >&2 || exit 77
mkdir -p "$cache"
cache=$(realpath "$cache")
scratch=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -rf "$scratch"' EXIT
results=${VM_RESULTS:-$scratch/results}
payload=$scratch/payload
prepare() (  # the machine, and the bridge, which is compiled with the machine's headers
    {
        flock 9  # for a run beside this one
        step "packages, in $cache"
        vm/fetch.sh "$cache" || exit 77
        step 'kernels and root disk'
        vm/build.sh "$cache"
    } 9>"$cache/lock"
    step 'bridge'
    vm/bridges.sh "$cache" "$payload" >"$scratch/bridge.log" 2>&1 || {
        cat "$scratch/bridge.log" >&2
        exit 1
    }
)
# Downloads leave a processor free, and so does the tool, which is compiled as one file.
prepare &
preparing=$!
step 'library and tool'
vm/payload.sh "$payload" "$@" >"$scratch/build.log" 2>&1 || {
    cat "$scratch/build.log" >&2
    exit 1
}
wait $preparing  # its status, when it fails, is this one's
declare -A machines=([strict]='a kernel that refuses physical memory' [relaxed]='one that allows it'
    [wide]='one of 64 bits' [uefi]='UEFI, SATA and NVMe')
# In a shell of its own, which becomes the emulator's.
boot() (  # KIND [speed]
    step "machine with ${machines[$1]}"
    rm -rf "${results:?}/$1"
    exec python3 vm/machine.py "$cache" "$payload" "$results/$1" "$@"
)
if [ "$*" = speed ]; then  # one after the other, so that nothing disturbs the times
    boot strict
    boot relaxed speed
    boot wide
    boot uefi
else  # each takes one processor
    boot strict &
    boot relaxed
    wait $!
    boot wide &
    boot uefi
    wait $!
fi
step 'comparison'

python3 vm/compare "$results"
if [ "$*" = speed ]; then python3 vm/compare/speed.py "$results/relaxed"; fi
