#!/bin/bash
# SPDX-License-Identifier: MIT
#
# Builds what runs in the machine: the library and its tool, installed as on any computer; the bridge
# for 32 and 64 bits; and the programs that ask them. Usage: payload.sh CACHE FOLDER [speed]
set -euo pipefail
cache=$1
folder=$2
cd "$(dirname "$0")/.."

build_bridges() {
    cmake -S bridge -B build/vm-bridge64 -G Ninja
    cmake --build build/vm-bridge64
    export PKG_CONFIG_SYSROOT_DIR=$cache/machine/sysroot
    export PKG_CONFIG_LIBDIR=$PKG_CONFIG_SYSROOT_DIR/usr/lib/i386-linux-gnu/pkgconfig
    cmake -S bridge -B build/vm-bridge -G Ninja "-DCMAKE_TOOLCHAIN_FILE=$PWD/cmake/i686-linux.cmake"
    cmake --build build/vm-bridge
}
# Beside the library and its tool, which is compiled as one file and so by one processor.
build_bridges &
bridges=$!

# In the folder of the release preset, so that its tests find all this built.
[ -f build/release/build.ninja ] || cmake --preset release -DTALVANE_BUILD_TESTS=OFF
cmake --build build/release --target Talvane talvane talvane_sim talvane_host talvane_preload
cmake --install build/release --prefix "$folder" --strip

wait $bridges
install -s build/vm-bridge64/talvane-ipmi-bridge "$folder/bin/talvane-ipmi-bridge64"
install -s build/vm-bridge/talvane-ipmi-bridge "$folder/bin"

program() {  # COMPILER NAME SOURCE [ARGUMENT...]
    "$1" -m32 -march=i686 -O2 -Wall -Wextra -Werror -I. -o "$folder/bin/$2" "${@:3}"
}
program 'g++' bridge_check -std=c++20 vm/guest/bridge_check.cpp
cp vm/guest/{run,common.sh,uefi,commands,end,with-ide,partition-disk} "$folder"
if [ "${3:-}" = speed ]; then
    cp vm/guest/speed "$folder"
    for agent in bench/inventory.c vm/guest/sensors.c; do
        # shellcheck disable=SC2016  # $ORIGIN is for the dynamic linker
        program gcc "$(basename "$agent" .c)" -std=gnu99 "$agent" -L"$folder/lib" -lTalvane \
            -Wl,-rpath,'$ORIGIN/../lib'
    done
    # shellcheck disable=SC2016  # $ORIGIN, as above
    program gcc inventory-file -std=gnu99 bench/inventory.c bench/memory_file.c -L"$folder/lib" \
        -lTalvane -Wl,-rpath,'$ORIGIN/../lib'
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
