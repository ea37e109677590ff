#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Records the exported symbols and the ABI of a release build as what the tests expect from now on.
# Usage: record-symbols.sh [LIBRARY]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
library=$(realpath "${1:-$root/build/release/libTalvane.so}")
"$root/scripts/exported-symbols.sh" "$library" >"$root/tests/symbols.expected"
mkdir -p "$root/tests/abi"
"$root/scripts/abi-dump.sh" "$library" "$root/tests/abi/libTalvane.abi"
echo "recorded in tests/symbols.expected and tests/abi/libTalvane.abi; see git diff"
