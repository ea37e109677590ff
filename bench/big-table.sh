#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Prints the description of a machine whose structure table has exactly BYTES bytes. It ends with as
# many processors, caches, ports, power supplies, fans and memory devices as one command answers.
# Before them stand as many structures of 6 bytes as fit, so that every look-up passes those first.
# Usage: big-table.sh BYTES
set -eu
awk -v bytes="$1" '
    # Adds a structure; `fields` are statements, separated by semicolons.
    function structure(type, area, fields,    parts, i, strings) {
        wanted = wanted sprintf("structure %d handle %d length %d\n", type, ++handle, area)
        strings = 0
        for (i = 1; i <= split(fields, parts, ";"); ++i) {
            wanted = wanted parts[i] "\n"
            if (split(parts[i], quoted, "\"") > 1) strings += length(quoted[2]) + 1
        }
        size += area + (strings > 0 ? strings + 1 : 2)
    }
    BEGIN {
        for (i = 1; i <= 16; ++i) {
            first = handle + 1
            for (level = 0; level < 3; ++level)
                structure(7, 19, "string 4 \"L" level "\";word 5 " level ";word 7 512;word 9 512")
            structure(4, 35, "string 4 \"CPU\";string 7 \"Maker\";byte 6 179;byte 24 65;" \
                      "word 18 200;word 20 3600;word 22 3200;" \
                      sprintf("word 26 %d;word 28 %d;word 30 %d", first, first + 1, first + 2))
        }
        for (i = 1; i <= 128; ++i) structure(8, 9, "string 4 \"Port\";byte 8 16")
        for (i = 1; i <= 32; ++i) structure(39, 22, "string 7 \"Supply\";word 14 0x1A2")
        for (i = 1; i <= 63; ++i) structure(27, 14, "byte 6 0x63;word 12 4800")
        structure(16, 15, "byte 4 3;byte 5 3;word 13 16")
        for (i = 1; i <= 16; ++i)
            structure(17, 27, "string 16 \"DIMM " i "\";string 17 \"BANK " i "\";word 12 1024;" \
                      "byte 18 0x12;word 21 333")

        room = bytes - size
        if (room < 6) {
            print "big-table.sh: " bytes " bytes are too few" > "/dev/stderr"
            exit 1
        }
        print "smbios version 2.3"
        for (; room >= 12; room -= 6) printf "structure 126 handle %d length 4\n", ++handle
        printf "structure 126 handle %d length %d\n", ++handle, room - 2
        printf "%s", wanted
    }'
