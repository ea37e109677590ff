#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Damages the parts of the bundled machines and the examples that fuzzing starts from, one byte at a
# time: each byte gets all 256 values, and each input ends at each byte. The targets of fuzzing, with
# their sanitizers, read the result. Prints a table; fails and names the input where a sanitizer
# complains. The targets have this machine's word size.
# Usage: every-byte.sh [TARGET...]; by default all of those in `targets` below. Takes about one hour
# on two processors, nearly all of it for smbios.
set -eu
cd "$(dirname "$0")/.."

targets='proc_texts fru disks sensor_repository smbios'
# shellcheck disable=SC2086  # names without blanks
[ $# -gt 0 ] || set -- $targets

scripts/install-packages.sh fuzz
build=build/fuzz64
cmake -S fuzz -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++-14 -DTALVANE_FUZZ_BITS=64 >/dev/null
# shellcheck disable=SC2046  # names without blanks
cmake --build "$build" --target machine_seeds $(printf ' every_byte_%s' "$@") >"$build/log" ||
    { cat "$build/log" >&2; exit 1; }

seeds=build/every-byte
rm -rf "$seeds"
fuzz/seeds.py "$seeds"
"$build/machine_seeds" "$seeds" machines/*

status=0
printf '%-20s %6s %7s %12s %8s\n' target inputs bytes tried seconds
for target in "$@"; do
    started=$(date +%s)
    find "$seeds/$target" -type f -size +0 -print0 |
        xargs -0 -n 1 -P "$(nproc)" "$build/every_byte_$target" 2>"$seeds/$target.log" >/dev/null ||
        { cat "$seeds/$target.log" >&2; status=1; }
    awk -v target="$target" -v seconds=$(($(date +%s) - started)) '
        /^[0-9]+ [0-9]+$/ { ++inputs; bytes += $1; tried += $2 }
        END { printf "%-20s %6d %7d %12d %8d\n", target, inputs, bytes, tried, seconds }
    ' "$seeds/$target.log"
done
exit $status
