#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Records the exported symbols and the ABI of a release build as what the tests, and the Debian
# package, expect from now on.
# Usage: record-symbols.sh [LIBRARY]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
library=$(realpath "${1:-$root/build/release/libTalvane.so}")
"$root/scripts/exported-symbols.sh" "$library" >"$root/tests/symbols.expected"
mkdir -p "$root/tests/abi"
"$root/scripts/abi-dump.sh" "$library" "$root/tests/abi/libTalvane.abi"
# The package's list keeps the version in which a name came; a new name gets the package's version.
symbols=$root/debian/libtalvane1.symbols
version=$(sed -n '1s/.*(\(.*\)).*/\1/p' "$root/debian/changelog")
cut -d ' ' -f 2 "$root/tests/symbols.expected" | awk -v version="$version" '
    NR == FNR && /^ / { since[$1] = $2; next }
    NR == FNR { print; next }
    { name = $1 "@Base"; print " " name, (name in since ? since[name] : version) }
' "$symbols" - >"$symbols.new"
mv "$symbols.new" "$symbols"
echo "recorded in tests/symbols.expected, tests/abi/libTalvane.abi and ${symbols#"$root"/}; see git diff"
