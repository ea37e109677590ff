#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Writes what a program compiled against the public headers relies on: the exported functions with
# the layout of all types they reach. Usage: abi-dump.sh LIBRARY OUTPUT
set -eu
library=$(realpath "$1")
output=$(realpath "$2")
cd "$(dirname "$0")/.."
abidw --header-file Talvane.h --header-file InformationRecords.h --header-file SmBios/SmBios.h \
    --header-file SmBios/BiosDataItem.h --header-file SmBios/EntryPoint.h \
    --header-file SmBios/LocalMemInfo.h \
    --drop-private-types --no-show-locs --no-corpus-path --no-comp-dir-path \
    --out-file "$output" "$library"
