#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Prints what a shared library exports, one symbol a line in the order of the names: kind (T code,
# D, B and R data, W and V weak), name as the linker sees it, and what it stands for in C++.
# Usage: exported-symbols.sh LIBRARY
set -eu
nm -D --defined-only "$1" | LC_ALL=C sort -k 3 | while read -r _ kind name; do
    printf '%s %s' "$kind" "$name"
    meaning=$(c++filt "$name")
    [ "$meaning" = "$name" ] || printf '  %s' "$meaning"
    echo
done
