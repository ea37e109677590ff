#!/bin/sh
# SPDX-License-Identifier: MIT
#
# The service's unit, its user and the rules of udev agree with one another and with the program.
# Usage: service_unit.sh SOURCE_DIR
set -u
bridge=$1/bridge
unit=$bridge/talvane-ipmi-bridge.service.in
failed=0
fail() { echo "$*" >&2; failed=1; }

# The value of a setting.
setting() { sed -n "s/^$1=//p" "$unit"; }

user=$(setting User)
[ -n "$user" ] || fail 'the unit names no user, so the service would be root'
[ "$(setting Group)" = "$user" ] || fail 'the unit has another group than the user'
grep -q "^u $user " "$bridge/talvane-ipmi-bridge.sysusers" || fail "no entry of sysusers for $user"
grep -q "user = \"$user\"" "$bridge/main.cpp" || fail "started by root, the bridge is not $user"
for device in 'SUBSYSTEM=="ipmi", KERNEL=="ipmi\[0-9\]\*"' 'SUBSYSTEM=="misc", KERNEL=="cuse"'; do
    grep -q "^$device, GROUP=\"$user\", MODE=\"0660\"" "$bridge/talvane-ipmi-bridge.rules" ||
        fail "no rule of udev gives $user: $device"
done

for wanted in Restart=on-failure LimitCORE=0 KeyringMode=private NoExecPaths=/ TimeoutStopSec=10 \
    CapabilityBoundingSet= NoNewPrivileges=yes MemoryMax=64M; do
    grep -qx "$wanted" "$unit" || fail "the unit lacks $wanted"
done
files=$(sed -n 's/^constexpr std::size_t kMaxFiles = \([0-9]*\);$/\1/p' "$bridge/OpenFiles.h")
tasks=$(setting TasksMax)
[ "${tasks:-0}" -gt "${files:-1000}" ] ||
    fail "TasksMax=$tasks leaves no thread for each of $files files and the bridge"

if command -v systemd-analyze >/dev/null; then
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT
    # A program that every machine has, since the bridge is not installed here.
    sed "s#@CMAKE_INSTALL_FULL_SBINDIR@/talvane-ipmi-bridge#/bin/true#" "$unit" \
        >"$work/talvane-ipmi-bridge.service"
    # It looks at the units that this one wants, too, and these are the system's.
    systemd-analyze verify --man=no "$work/talvane-ipmi-bridge.service" 2>&1 |
        grep -F "$work/talvane-ipmi-bridge.service" >"$work/complaints"
    [ ! -s "$work/complaints" ] || fail "$(cat "$work/complaints")"
fi
exit $failed
