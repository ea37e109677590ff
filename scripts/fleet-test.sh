#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Watches twenty simulated servers with Prometheus, node_exporter and Alertmanager of Debian: a temperature
# crosses its limit, and the right alert fires for the right server and for no other. Prints what happened
# and how long it took. Takes some minutes and is no part of the tests. The programs are fetched into
# build/fleet and not installed; all run as this user, on ports of this computer alone.
# Usage: fleet-test.sh [TOOL]; TOOL is a talvane that is built, by default the one that this script builds.
set -eu
cd "$(dirname "$0")/.."
[ $# -le 1 ] || { echo 'usage: fleet-test.sh [TOOL]' >&2; exit 2; }

scripts/install-packages.sh fleet >&2
scripts/enable-32-bit.sh >/dev/null
if [ $# = 1 ]; then
    tool=$1
else
    cmake --preset run >/dev/null
    cmake --build --preset run --target talvane >/dev/null
    tool=build/run/tools/talvane
fi

packages=build/fleet/packages
if [ ! -x "$packages/usr/bin/prometheus-alertmanager" ]; then
    echo 'Fetching prometheus, prometheus-node-exporter and prometheus-alertmanager' >&2
    (
        # shellcheck source=scripts/private-apt.sh
        . scripts/private-apt.sh
        start_apt "$PWD/build/fleet/apt" "$(dpkg --print-architecture)" >/dev/null
        mkdir -p build/fleet/debs
        cd build/fleet/debs
        apt-get -q download prometheus prometheus-node-exporter prometheus-alertmanager >/dev/null
    )
    mkdir -p "$packages"
    for deb in build/fleet/debs/*.deb; do
        dpkg -x "$deb" "$packages"
    done
fi
exec python3 scripts/fleet-test.py "$packages/usr/bin" "$tool"
