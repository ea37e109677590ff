#!/bin/sh
# SPDX-License-Identifier: MIT
#
# The library exports exactly the recorded symbols. Usage: exports.sh SOURCE_DIR LIBRARY
set -u
if ! "$1/scripts/exported-symbols.sh" "$2" | diff -u "$1/tests/symbols.expected" -; then
    echo "the exported symbols differ; scripts/record-symbols.sh records a wanted change" >&2
    exit 1
fi
