#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds the library and its tool in build/run, and shows what the library
# says of a simulated server. Usage: run.sh [MACHINE]; a machine's folder, by default the bundled
# full server's.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
machine=${1:-$root/machines/full-server}
case $machine in /*) ;; *) machine=$PWD/$machine ;; esac
cd "$root"

scripts/install-packages.sh build >&2
{
    cmake --preset run
    cmake --build --preset run
} >&2
scripts/enable-32-bit.sh >/dev/null
exec build/run/tools/talvane report --machine "$machine"
