#!/bin/bash
# SPDX-License-Identifier: MIT
#
# Builds the bridge that runs in the machine, for 32 and 64 bits. Usage: bridges.sh CACHE FOLDER
set -euo pipefail
cache=$1
folder=$2
cd "$(dirname "$0")/.."

# All files of a target in one, and without debug information, which the machine does not get.
options=(-S bridge -G Ninja -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0
    '-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O2 -DNDEBUG')
cmake "${options[@]}" -B build/vm-bridge64
cmake --build build/vm-bridge64
export PKG_CONFIG_SYSROOT_DIR=$cache/machine/sysroot
export PKG_CONFIG_LIBDIR=$PKG_CONFIG_SYSROOT_DIR/usr/lib/i386-linux-gnu/pkgconfig
cmake "${options[@]}" -B build/vm-bridge "-DCMAKE_TOOLCHAIN_FILE=$PWD/cmake/i686-linux.cmake"
cmake --build build/vm-bridge

mkdir -p "$folder/bin"
install -s build/vm-bridge64/talvane-ipmi-bridge "$folder/bin/talvane-ipmi-bridge64"
install -s build/vm-bridge/talvane-ipmi-bridge "$folder/bin"
