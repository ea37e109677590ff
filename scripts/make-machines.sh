#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Makes the bundled machines that come from real firmware anew: machines/qemu-*. Each runs SeaBIOS in
# QEMU for four seconds, stops, and saves the SMBIOS entry point and table that the firmware left in
# memory. Firmware code is not kept: what is neither entry point nor table is zero.
# Needs qemu-system-x86; no test runs this. Usage: make-machines.sh [MACHINE...]
set -eu
cd "$(dirname "$0")/../machines"

segment=0xF0000
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

die() { echo "make-machines.sh: $*" >&2; exit 1; }
command -v qemu-system-i386 >/dev/null || die 'qemu-system-i386 is missing: install qemu-system-x86'

# number FILE OFFSET SIZE: little-endian
number() { echo $((0x$(od -An -v -tx1 -j "$(($2))" -N "$3" "$1" | tr ' ' '\n' | grep . | tac | tr -d '\n'))); }

# copy FROM OFFSET COUNT TO OFFSET
copy() { dd if="$1" of="$4" bs=1 skip="$(($2))" count="$(($3))" seek="$(($5))" conv=notrunc status=none; }

zeros() { dd if=/dev/zero of="$1" bs="$(($2))" count=1 status=none; }

# Offset of the entry point within the saved segment.
entry_offset() {
    offset=$(LC_ALL=C grep -abo _SM_ "$1" | cut -d: -f1 |
        while read -r at; do [ $((at % 16)) -ne 0 ] || { echo "$at"; break; }; done)
    [ -n "$offset" ] || die 'the firmware left no SMBIOS entry point'
    echo "$offset"
}

# run ARGUMENTS...: sets entry, table and length; leaves $work/segment and, for a table elsewhere,
# $work/pages with the pages of the table from $page on.
run() {
    rm -f "$work/segment" "$work/pages"
    {
        sleep 4
        echo stop
        echo "pmemsave $segment 0x10000 \"$work/segment\""
        while [ ! -s "$work/segment" ] || [ "$(stat -c %s "$work/segment")" -ne 65536 ]; do sleep 1; done
        entry=$(entry_offset "$work/segment")
        table=$(number "$work/segment" $((entry + 24)) 4)
        length=$(number "$work/segment" $((entry + 22)) 2)
        page=$((table / 4096 * 4096))
        echo "pmemsave $page $(((table + length - page + 4095) / 4096 * 4096)) \"$work/pages\""
        echo quit
    } | timeout 600 qemu-system-i386 -accel tcg -display none -nodefaults -monitor stdio "$@" >/dev/null
    entry=$(entry_offset "$work/segment")
    table=$(number "$work/segment" $((entry + 24)) 4)
    length=$(number "$work/segment" $((entry + 22)) 2)
    page=$((table / 4096 * 4096))
}

# keep_segment MACHINE: the entry point, and the table where it lies in the segment.
keep_segment() {
    zeros "$1/segment.bin" 0x10000
    copy "$work/segment" "$entry" 31 "$1/segment.bin" "$entry"
    [ "$table" -lt $((segment)) ] || [ "$table" -ge $((0x100000)) ] ||
        copy "$work/segment" $((table - segment)) "$length" "$1/segment.bin" $((table - segment))
}

# keep_pages MACHINE: the table where it lies elsewhere.
keep_pages() {
    [ "$table" -ge $((0x100000)) ] || die "$1: the firmware put the table into the BIOS segment"
    zeros "$1/table.bin" "$(stat -c %s "$work/pages")"
    copy "$work/pages" $((table - page)) "$length" "$1/table.bin" $((table - page))
}

# keep_dump MACHINE: entry point and table as `dmidecode --dump-bin` writes them.
keep_dump() {
    zeros "$1/smbios.bin" $((32 + length))
    copy "$work/segment" "$entry" 31 "$1/smbios.bin" 0
    copy "$work/pages" $((table - page)) "$length" "$1/smbios.bin" 32
    # The table now starts at 32; the second checksum takes up the difference to the old address.
    sum=$(number "$1/smbios.bin" 21 1)
    for offset in 24 25 26 27; do sum=$((sum + $(number "$1/smbios.bin" $offset 1))); done
    printf '%b' "\\0$(printf '%o' $(((sum - 32) & 255)))" >"$work/byte"
    copy "$work/byte" 0 1 "$1/smbios.bin" 21
    printf '\040\000\000\000' >"$work/address"
    copy "$work/address" 0 4 "$1/smbios.bin" 24
}

start() { mkdir -p "$1"; echo "$1"; }

# describe MACHINE: machine.txt from standard input.
describe() { cat >"$1/machine.txt"; }

make_qemu_small() {
    start qemu-small
    run -M pc-i440fx-7.2 -m 128
    keep_segment qemu-small
    describe qemu-small <<END
# A small virtual machine as QEMU 7.2 and SeaBIOS set it up: one processor, 128 MB, no -smbios
# argument. Entry point and table (SMBIOS 2.8) lie in the BIOS segment where the firmware put them.
memory 128M
segment segment.bin
END
}

make_qemu_4_sockets() {
    start qemu-4-sockets
    run -M pc-i440fx-7.2 -m 1024 -smp 8,sockets=4,cores=2,threads=1 \
        -smbios type=0,vendor='Harrow Firmware',version=4.20,date=05/17/2006,release=4.2 \
        -smbios type=1,manufacturer='Harrow Systems',product='Quad 800',version='Rev C',serial=HS800-0042,sku=Q8,family=Quad \
        -smbios type=2,manufacturer='Harrow Systems',product='QB-4',version=1.1,serial=QB4-00077,asset=Rack-7,location=Tray \
        -smbios type=3,manufacturer='Harrow Systems',version=4U,serial=HS800-0042,asset=Rack-7,sku=Q8 \
        -smbios type=4,sock_pfx=CPU,manufacturer='Harrow Silicon',version='HX 2.8',serial=HX-1,asset=P1,part=HX28,max-speed=3600,current-speed=2800 \
        -smbios type=8,internal_reference=J1A1,external_reference='Keyboard',connector_type=0x0f,port_type=0x0d \
        -smbios type=8,internal_reference=J9,external_reference='Serial A',connector_type=0x08,port_type=0x09 \
        -smbios type=11,value='Harrow Quad' \
        -smbios type=17,loc_pfx='DIMM_A',bank='BANK 0',manufacturer='Harrow Memory',serial=M0001,asset=R1,part=HM1G,speed=667
    keep_dump qemu-4-sockets
    describe qemu-4-sockets <<END
# A virtual machine with four sockets. QEMU's -smbios arguments name its makers. The firmware put the
# table at the end of memory, where the library cannot read it (see qemu-high-table). Here it is given
# as a dump, which lies in the BIOS segment.
memory 1024M
smbios dump smbios.bin
END
}

make_qemu_high_table() {
    start qemu-high-table
    run -M pc-i440fx-7.2 -m 64 -smp 8,sockets=8,cores=1,threads=1
    keep_segment qemu-high-table
    keep_pages qemu-high-table
    describe qemu-high-table <<END
# SeaBIOS keeps a table of more than 600 bytes at the end of memory instead of the BIOS segment.
# The library reads the table with one read, as long as the table's address and 64 KiB. That read ends
# past the memory of this machine. So the machine has an SMBIOS entry point, and every command that
# needs the table answers -1.
memory 64M
segment segment.bin
pages $(printf '0x%X' "$page") table.bin
END
}

make_qemu_legacy() {
    start qemu-legacy
    run -M pc-i440fx-1.7 -m 512 \
        -smbios type=0,vendor='Old Harrow BIOS',version='HB 1.7',date=11/22/99 \
        -smbios type=1,manufacturer='Harrow Systems',product='Mono 100',version=A,serial=M100-3
    keep_segment qemu-legacy
    describe qemu-legacy <<END
# The table of an old machine type, SMBIOS 2.4, made by SeaBIOS itself, with memory mapping
# structures (types 19 and 20).
memory 512M
segment segment.bin
END
}

[ $# -gt 0 ] || set -- qemu-small qemu-4-sockets qemu-high-table qemu-legacy
for machine; do
    case $machine in
    qemu-small) make_qemu_small ;;
    qemu-4-sockets) make_qemu_4_sockets ;;
    qemu-high-table) make_qemu_high_table ;;
    qemu-legacy) make_qemu_legacy ;;
    *) die "no such machine: $machine" ;;
    esac
done
