#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds the library and its tool, and shows what the library says of a
# simulated server. Usage: run.sh [MACHINE]; by default the bundled full server.
set -eu
cd "$(dirname "$0")/.."

machine=${1:-machines/full-server}
build=build/run
scripts/install-packages.sh build >&2
{
    cmake --preset release -B "$build" -DTALVANE_BUILD_TESTS=OFF
    cmake --build "$build"
} >&2
scripts/enable-32-bit.sh >/dev/null
exec "$build/tools/talvane" report --machine "$machine"
