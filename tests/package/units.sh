#!/bin/sh
# SPDX-License-Identifier: MIT
#
# systemd takes the unit files as they are meant: no unknown word, a program that is there, and no more
# rights than before. Skipped where systemd-analyze is not installed. Usage: units.sh BUILD_DIR CMAKE
set -u
build=$1 cmake=$2
command -v systemd-analyze >/dev/null || exit 77
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "$*" >&2
    exit 1
}

"$cmake" --install "$build" --prefix "$work/prefix" >"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
units=$work/prefix/lib/systemd/system
cp -r "$units" "$work/units"
# The service names the place that the build was configured for.
sed -i "s|^ExecStart=[^ ]*/talvane |ExecStart=$work/prefix/bin/talvane |" "$work"/units/*.service
grep -q "^ExecStart=$work/prefix/bin/talvane metrics --output " "$work/units/talvane-metrics.service" ||
    fail 'the service does not run talvane'
systemd-analyze verify --man=no "$work/units/talvane-metrics.service" "$work/units/talvane-metrics.timer" \
    >"$work/log" 2>&1 || { cat "$work/log" >&2; fail 'systemd refuses a unit'; }
# Complaints about other units of this computer are none of these.
grep talvane "$work/log" >&2 && fail 'systemd complains about a unit'

# The exposure that `systemd-analyze security` works out, in tenths: 0 is none, 100 all that root may.
systemd-analyze security --offline=yes --threshold=20 --no-pager "$work/units/talvane-metrics.service" \
    >"$work/log" 2>&1 || { cat "$work/log" >&2; fail 'the service has more rights than it had'; }
