#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Writes the FRU inventory of the full server, machines/full-server/inventory.fru: a chassis, a
# board and a product area with texts of type 3 in English (IPMI FRU Information Storage
# Definition 1.0). Usage: make-inventory.sh
set -eu
cd "$(dirname "$0")/../machines/full-server"

# Lines of "HEX BYTES" or "TEXT" per area; type/length bytes, end marker, padding, checksums and the
# common header are worked out. The bytes come as octal escapes for printf, since awk has no binary.
octal=$(awk '
    function add(value) { area[size++] = value }
    function close_area(    i, sum) {
        add(193)                                    # no more fields
        while ((size + 1) % 8) add(0)
        area[1] = (size + 1) / 8
        for (i = 0; i < size; ++i) sum += area[i]
        add((256 - sum % 256) % 256)
        start[areas++] = (8 + total) / 8
        for (i = 0; i < size; ++i) all[total++] = area[i]
        size = 0
    }
    BEGIN { for (i = 1; i < 256; ++i) code[sprintf("%c", i)] = i }
    /^#/ { next }
    /^end$/ { close_area(); next }
    /^bytes / { for (i = 2; i <= NF; ++i) add($i); next }
    { add(192 + length($0)); for (i = 1; i <= length($0); ++i) add(code[substr($0, i, 1)]) }
    END {
        head[0] = 1; head[1] = 0; head[2] = start[0]; head[3] = start[1]; head[4] = start[2]
        head[5] = 0; head[6] = 0
        for (i = 0; i < 7; ++i) sum += head[i]
        head[7] = (256 - sum % 256) % 256
        for (i = 0; i < 8; ++i) printf "\\%03o", head[i]
        for (i = 0; i < total; ++i) printf "\\%03o", all[i]
    }' <<'END'
# Chassis: version, length, type 23 (rack mount); part and serial number.
bytes 1 0 23
KC-2U-27
VMC-0099120
end
# Board: version, length, language, date of manufacture; maker, name, serial and part number.
bytes 1 0 0 0 0 0
Vessel & Marrow Computers
KB-27 Mainboard
KB27A0440187
PN-27-100
end
# Product: version, length, language; maker, name, part, version, serial number, asset tag.
bytes 1 0 0
Vessel & Marrow Computers
Ketch 2700 R
KT-2700
Rev 3
VM27-0001934
Asset 60071
end
END
)
# shellcheck disable=SC2059  # the format is the bytes
printf "$octal" >inventory.fru
