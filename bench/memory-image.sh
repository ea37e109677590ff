#!/bin/bash
# SPDX-License-Identifier: MIT
#
# Makes a file of the first two mebibytes of memory with a capture of dmidecode --dump-bin at
# 0xF0000: the entry point's table address, 0x20 in the capture, becomes 0xF0020, and its checksum
# is corrected for that. Usage: memory-image.sh CAPTURE FILE
set -euo pipefail
capture=$1
memory=$2
truncate -s 2M "$memory"
poke() { dd of="$memory" bs=64K seek="$1" oflag=seek_bytes conv=notrunc status=none; }
poke $((0xF0000)) <"$capture"
checksum=$(od -An -tu1 -j 21 -N 1 "$capture")
# shellcheck disable=SC2059  # the format is the byte
printf "\\x$(printf %02x $(((checksum - 0x0F) & 0xFF)))" | poke $((0xF0000 + 21))
printf '\x20\x00\x0f\x00' | poke $((0xF0000 + 24))
