#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Writes what a program compiled against the classes relies on: the exported functions with the
# layout of all types that they reach. Usage: abi-dump.sh LIBRARY OUTPUT
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
abidw --exported-interfaces-only --drop-undefined-syms \
    --no-show-locs --no-corpus-path --no-comp-dir-path --out-file "$2" "$1"
sed -i "s|path='$root/|path='|" "$2"  # the same wherever the sources lie
