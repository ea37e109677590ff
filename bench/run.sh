#!/bin/bash
# SPDX-License-Identifier: MIT
#
# Measures the library and prints what it found; nothing is passed or failed. dmidecode and the
# agent are compared as whole processes that read one capture from a file and print its texts to
# /dev/null. Everything else runs on the simulated server. Whole processes are counted by QEMU's
# user emulation. What is counted within a call takes a kernel that runs 32-bit programs.
# Usage: run.sh [CAPTURE]; a file of dmidecode --dump-bin, by default the largest of the captures.
set -euo pipefail
cd "$(dirname "$0")/.."
data=${TALVANE_SHARED_DATA:-$PWD/../shared/data}
capture=$(realpath "${1:-$data/smbios/vmware-vm-128cpu.bin}")
if [ ! -r "$capture" ]; then
    echo "run.sh: cannot read $capture" >&2
    exit 2
fi
runs=200
commands='board processors memory ports power ups fans voltages temperatures system'

scripts/install-packages.sh bench >&2
programs=$(scripts/enable-32-bit.sh)
build=build/bench
{
    cmake --preset release -B "$build" -DTALVANE_BUILD_TESTS=OFF -DTALVANE_BUILD_TOOLS=OFF
    cmake --build "$build"
    # shellcheck disable=SC2016  # $ORIGIN is for the dynamic linker
    build_agent() {
        gcc -m32 -march=i686 -O2 -std=gnu99 -I. "${@:2}" -o "$build/$1" \
            -L"$build" -lTalvane -Wl,-rpath,'$ORIGIN'
    }
    build_agent inventory bench/inventory.c
    build_agent inventory-file bench/inventory.c bench/memory_file.c
    gcc -m32 -march=i686 -O2 -std=gnu99 -I. -c bench/inventory.c -o "$build/inventory.o"
    # shellcheck disable=SC2016  # $ORIGIN, as above
    g++ -m32 -march=i686 -O2 -std=c++20 -I. "$build/inventory.o" bench/ports.cpp \
        -o "$build/inventory-ports" -L"$build" -lTalvane -Wl,-rpath,'$ORIGIN'
    gcc -m32 -march=i686 -O2 -std=gnu99 -o "$build/bare-start" bench/bare/start.c
    gcc -O2 -std=gnu99 -shared -fPIC -o "$build/count.so" bench/count_instructions.c
    # shellcheck disable=SC2016  # $ORIGIN, as above
    g++ -m32 -march=i686 -O2 -std=c++20 -I. bench/sensors.cpp \
        -o "$build/sensors" -L"$build" -lTalvane -Wl,-rpath,'$ORIGIN'
} >"$build.log" 2>&1 || { cat "$build.log" >&2; exit 1; }
inventory=$PWD/$build/inventory
file_agent=$PWD/$build/inventory-file
launcher=$PWD/$build/simulator/talvane-sim
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/capture"
ln -s "$capture" "$work/capture/capture.bin"
echo "smbios dump capture.bin" >"$work/capture/machine.txt"

export BENCH_MEMORY=$work/memory
bench/memory-image.sh "$capture" "$BENCH_MEMORY"

# Accesses to the machine while the agent runs COMMANDS.
accesses() {
    "$launcher" --log "$work/log" "$work/capture" -- "$inventory" "$@" >/dev/null
    awk '{ ++calls[$1] } END { for (call in calls) printf " %s %d", call, calls[call] }' "$work/log"
}

# Instructions of a whole process, user space.
process() {
    local emulator=qemu-x86_64
    ! file_class "$1" || emulator=qemu-i386
    rm -f "$work/count"
    BENCH_INSTRUCTIONS=$work/count "$emulator" -plugin "$PWD/$build/count.so" "$(command -v "$1")" \
        "${@:2}" >/dev/null
    cat "$work/count"
}
# Whether a program has 32 bits: byte 4 of an ELF file.
file_class() { [ "$(od -An -tu1 -j 4 -N 1 "$(command -v "$1")")" -eq 1 ]; }

echo "Capture: $(basename "$capture"), $(stat -c %s "$capture") bytes"
echo
echo 'Instructions of whole processes'
row() {
    printf '  %-38s %12d  %-38s %12d  %6s\n' "$1" "$2" "$3" "$4" \
        "$(awk -v a="$2" -v b="$4" 'BEGIN { printf "%.2f", a / b }')"
}
bare_start=$(process "$PWD/$build/bare-start")
row 'agent in C, starting and ending' "$(process "$inventory")" 'empty program in C' "$bare_start"
agent_all=$(process "$file_agent" all)
dmidecode_all=$(process dmidecode --from-dump "$capture")
row 'agent, SMBIOS' "$agent_all" 'dmidecode --from-dump' "$dmidecode_all"
row 'agent, SMBIOS, without its start' $((agent_all - $(process "$file_agent"))) \
    'dmidecode, without its start' $((dmidecode_all - $(process dmidecode --version)))

if [ "$programs" = native ]; then
    . bench/within-calls.sh
else
    echo
    echo 'Processor time and instructions within calls: not measured, since this kernel runs no'
    echo '32-bit programs itself'
fi

mkdir "$work/sensor"
bench/many-sensors.sh 1 >"$work/sensor/machine.txt"
echo
echo "The object with the sensors' tables: $("$launcher" "$work/sensor" -- "$build/sensors") bytes"

echo
echo 'Accesses to the machine: first command of a process, all of the table, those without one'
cat >>"$work/capture/machine.txt" <<'MACHINE'
pci 00:00.0 8086:2578 class 06.00.00
drive hda sectors 78165360
entry hda 0 1 0x83 63 208782
entry hda 0 2 0x0F 208845 77947380
entry hda 208845 1 0x82 63 4192902
MACHINE
for command in $commands all pci drives partitions; do
    printf '  %-14s%s\n' "$command" "$(accesses "$command")"
done

echo
strip -o "$work/stripped" "$build/libTalvane.so"
echo "Library: $(stat -c %s "$work/stripped") bytes stripped (goal: below 153600)"
