#!/bin/bash
# SPDX-License-Identifier: MIT
#
# Builds what runs in the machine but for the bridge: the library and its tool, installed as on any
# computer, and the programs that ask them. Usage: payload.sh FOLDER [speed]
set -euo pipefail
folder=$1
cd "$(dirname "$0")/.."

# In the folder of the release preset, so that its tests find all this built.
[ -f build/release/build.ninja ] || cmake --preset release -DTALVANE_BUILD_TESTS=OFF
cmake --build build/release --target Talvane talvane talvane_sim talvane_host talvane_preload
cmake --install build/release --prefix "$folder" --strip

program() {  # COMPILER NAME SOURCE [ARGUMENT...]
    "$1" -m32 -march=i686 -O2 -Wall -Wextra -Werror -I. -o "$folder/bin/$2" "${@:3}"
}
program 'g++' bridge_check -std=c++20 vm/guest/bridge_check.cpp
cp vm/guest/{run,common.sh,uefi,commands,end,with-ide,partition-disk} "$folder"
if [ "${2:-}" = speed ]; then
    cp vm/guest/speed "$folder"
    for agent in bench/inventory.c vm/guest/sensors.c; do
        program gcc "$(basename "$agent" .c)" -std=gnu99 "$agent" -L"$folder/lib" -lTalvane
    done
    program gcc inventory-file -std=gnu99 bench/inventory.c bench/memory_file.c -L"$folder/lib" \
        -lTalvane
    capture=${TALVANE_SHARED_DATA:-../shared/data}/smbios/vmware-vm-128cpu.bin
    if [ -r "$capture" ]; then
        cp "$capture" "$folder/capture.bin"
        bench/memory-image.sh "$capture" "$folder/memory"
    fi
    for bare in start memory ports requests; do
        program gcc "bare_$bare" -std=gnu99 "bench/bare/$bare.c"
    done
    gcc -m32 -march=i686 -O2 -std=gnu99 -shared -fPIC -o "$folder/lib/record_requests.so" \
        bench/bare/record_requests.c
fi
