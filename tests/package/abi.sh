#!/bin/sh
# SPDX-License-Identifier: MIT
#
# The library's ABI is the recorded one. Skipped (exit code 77) where abigail-tools is missing.
# Usage: abi.sh SOURCE_DIR LIBRARY
set -u
if ! command -v abidw >/dev/null || ! command -v abidiff >/dev/null; then
    echo 'skipped: abidw and abidiff are not installed (package abigail-tools)'
    exit 77
fi
dump=$(mktemp)
trap 'rm -f "$dump"' EXIT
"$1/scripts/abi-dump.sh" "$2" "$dump" || exit 1
if ! abidiff "$1/tests/abi/libTalvane.abi" "$dump"; then
    echo "the ABI differs; scripts/record-symbols.sh records a wanted change" >&2
    exit 1
fi
