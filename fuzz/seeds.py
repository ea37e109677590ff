#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the inputs that fuzzing starts from: small, whole examples of what each target takes.

Usage: seeds.py FOLDER. Makes a folder for each target in it. What the bytes of an input mean, the
target's source says.
"""

import io
import pathlib
import struct
import sys
import tarfile

ROOT = pathlib.Path(__file__).resolve().parent.parent


# SMBIOS (DSP0134)

TABLE_ADDRESS = 0x800


def structure(kind, handle, body, *strings):
    """A structure with its string set. `body` is what follows the header, in hexadecimal."""
    formatted = bytes.fromhex(body)
    texts = b"".join(text.encode() + b"\0" for text in strings) or b"\0"
    return struct.pack("<BBH", kind, 4 + len(formatted), handle) + formatted + texts + b"\0"


def smbios(*structures):
    table = b"".join(structures)
    entry = struct.pack("<4sBBBBHB5s5sBHIHB", b"_SM_", 0, 31, 2, 3, 256, 0, b"", b"_DMI_", 0,
                        len(table), TABLE_ADDRESS, len(structures), 0x23)
    return entry.ljust(32, b"\0") + table


def dmi(*structures):
    table = b"".join(structures)
    entry = struct.pack("<5sBHIHB", b"_DMI_", 0, len(table), TABLE_ADDRESS, len(structures), 0x20)
    return entry.ljust(32, b"\0") + table


BIOS = structure(0, 0, "01 02 00f0 03 07 0000000000000000 0000", "Maker", "1.20", "01/02/2006")
SYSTEM = structure(1, 1, "01 02 03 04" + "00" * 16 + "06", "Maker", "Server", "2", "S123")
BOARD = structure(2, 2, "01 02 03 04 05 09 00 0300 0a 00", "Maker", "Board", "B", "S9", "Tag")
PROCESSOR = structure(4, 4, "01 03 b3 02 0000000000000000 03 8e 6400 b80b b80b 41 04 "
                      "0700 0800 0900 04 05 06 02 02 04 0000", "CPU1", "Maker", "Chip", "S", "T", "P")
CACHES = [structure(7, 7 + level, f"01 8{level} 01 2000 2000 2000 2000 0a 05 03 05", f"L{level + 1}")
          for level in range(3)]
CONTROLLER = structure(5, 5, "05 05 03 03 0b 0c00 0400 02 02 0600 0a00 04")
MODULES = [structure(6, handle, "01 01 3c 0001 08 08 00", name)
           for handle, name in ((6, "DIMM1"), (10, "BANK_2"))]
ARRAY = structure(16, 16, "03 03 06 00000080 feff 0200")
DEVICES = [structure(17, 17 + i, f"1000 feff 4800 4000 {size} 09 00 01 02 07 8000 0a01 03 04 05 06",
                     f"DIMM{i}", "BANK 0", "Maker", "S", "T", "P") for i, size in enumerate(("0004", "ff7f"))]
PORT = structure(8, 20, "01 12 02 0f 0d", "J1", "Mouse")
ON_BOARD = structure(10, 21, "83 01 05 02", "Video", "Network")
POWER = structure(39, 22, "01 01 02 03 04 05 06 f401 b212 ffff ffff ffff",
                  "PSU", "Maker", "S", "T", "M", "R")
COOLING = structure(27, 23, "1c00 65 01 00000000 2003")
VOLTAGE = structure(26, 24, "01 67 e803 0000 0100 6400 0a00 00000000 e403", "12V")
TEMPERATURE = structure(28, 25, "01 63 e803 0000 0100 6400 0a00 00000000 1801", "CPU")
END = structure(127, 126, "")

ALL = [BIOS, SYSTEM, BOARD, PROCESSOR, *CACHES, CONTROLLER, *MODULES, ARRAY, *DEVICES, PORT, ON_BOARD,
       POWER, COOLING, VOLTAGE, TEMPERATURE, END]

TABLES = {
    "whole": smbios(*ALL),
    "dmi": dmi(BIOS, SYSTEM, PROCESSOR, CONTROLLER, *MODULES, END),
    "processor": smbios(BIOS, PROCESSOR, *CACHES),
    "modules": smbios(BIOS, CONTROLLER, *MODULES),
    "devices": smbios(BIOS, ARRAY, *DEVICES),
    "probes": smbios(BIOS, VOLTAGE, TEMPERATURE, COOLING, POWER),
    "short": smbios(structure(0, 0, ""), structure(4, 4, "01"), structure(17, 17, "")),
    "cut": smbios(*ALL)[:-60],
}
# Byte 31 chooses the question.
SMBIOS = {f"{name}_{question}": table[:31] + bytes([question]) + table[32:]
          for name, table in TABLES.items() for question in range(14)}


# The sensor repository (IPMI 2.0, 43)

def full_record(number, kind, event, name, linearization=0, unit=1, m=2, b=0, exponents=0x00):
    body = bytes([0x20, 0, number, 7, 1, 0x7F, 0x68, kind, event]) + bytes.fromhex("95 0a 95 7a 3f 3f")
    body += bytes([0x00, unit, 0, linearization, m, 0, b, 0, 0, exponents, 7])
    body += bytes.fromhex("50 60 10 ff 00 5a 55 50 05 0a 0f 02 02 00 00 00")
    body += bytes([0xC0 | len(name)]) + name.encode()
    return struct.pack("<HBBB", number, 0x51, 1, len(body)) + body


def counted(*parts):
    return b"".join(bytes([len(part)]) + part for part in parts)


RECORDS = [full_record(0x30, 1, 1, "CPU Temp"), full_record(0x31, 2, 1, "12V", unit=4, exponents=0xE0),
           full_record(0x32, 4, 1, "FAN 1", unit=18, m=60), full_record(0x33, 7, 0x6F, "CPU Status"),
           full_record(0x34, 1, 1, "Log", linearization=1), full_record(0x35, 2, 1, "Inverse", linearization=7)]
READINGS = bytes.fromhex("3c c0 00 00 3f 0f 0a 05 50 55 5a")

REPOSITORY = {
    "whole": counted(*RECORDS) + b"\0" + READINGS,
    "one": counted(RECORDS[0]) + b"\0" + READINGS,
    "discrete": counted(RECORDS[3]) + b"\0\x00\xc0\x80\x00",
    "cut": counted(RECORDS[0][:40], RECORDS[1][:5]) + b"\0",
    "compact": counted(bytes.fromhex("0100 51 02 05 20 00 30 07 01")) + b"\0",
}

REPLIES = {
    "repository": counted(bytes.fromhex("51 0100 0000"), b"\xff\xff" + RECORDS[0], b"\x3c\xc0\x00",
                          bytes.fromhex("3f 0f 0a 05 50 55 5a")) + READINGS,
    "fan": counted(bytes.fromhex("51 0100"), b"\xff\xff" + RECORDS[2], READINGS[:8], READINGS[:3]),
    "silent": b"\0" * 32,
    "long": counted(b"\x51\x02\x00", b"\xff" * 255, b"\x01" * 255),
}


# The inventory device (IPMI FRU 1.0)

def area(head, *fields, encoding=3):
    body = bytes.fromhex(head)
    for field in fields:
        data = field.encode() if isinstance(field, str) else field
        body += bytes([encoding << 6 | len(data)]) + data
    body += b"\xc1"
    blocks = -(-(len(body) + 3) // 8)
    return (bytes([1, blocks]) + body).ljust(blocks * 8, b"\0")


def inventory(chassis, board, product):
    at = 1
    offsets = []
    for part in (chassis, board, product):
        offsets.append(at)
        at += len(part) // 8
    return bytes([1, 0, *offsets, 0, 0, 0]) + chassis + board + product


CHASSIS = area("17", "C-PART", "C-SERIAL")
BOARD_AREA = area("19 000000", "Maker", "Board", "B-SERIAL", "B-PART", "file")
PRODUCT = area("19", "Maker", "Server", "P-PART", "2", "P-SERIAL", "ASSET")



def endless(head, fields):
    """An area of 248 bytes with fields of 63: the last ones begin after its end."""
    body = bytes.fromhex(head) + (b"\xff" + b"F" * 63) * fields
    return (bytes([1, 31]) + body)[:248].ljust(248, b"\xff")


FRU = {
    "whole": inventory(CHASSIS, BOARD_AREA, PRODUCT),
    "endless_fields": inventory(endless("17", 2), endless("19 000000", 4), endless("19", 5)),
    "six_bit": inventory(area("17", b"\x29\xdc\xa6\x91", b"\x64\x54", encoding=2), BOARD_AREA, PRODUCT),
    "bcd": inventory(area("17", b"\x12\x3a\xbc", b"\x90", encoding=1), BOARD_AREA,
                     area("01", "M\0a\0", "S\0", encoding=3)),
    "binary": inventory(area("17", b"\x12\x34", b"", encoding=0), BOARD_AREA, PRODUCT),
    "cut": inventory(CHASSIS, BOARD_AREA, PRODUCT)[:30],
}


# Conversion (IPMI 2.0, 36.3)

def conversion(linearization=0, m=2, b=1, b_exponent=0, result_exponent=0, raw=0x40, value=12.5, unit=0):
    return struct.pack("<BBhhbbBd", unit, linearization, m, b, b_exponent, result_exponent, raw, value)


CONVERSION = {f"function_{code}": conversion(code) for code in range(13)}
CONVERSION |= {
    "small": conversion(m=-511, b=511, b_exponent=7, result_exponent=-8),
    "no_factor": conversion(m=0),
    "complement": conversion(unit=0x80, raw=0xFE, value=-3.0),
    "huge": conversion(linearization=4, m=511, result_exponent=7, value=1e300),
    "not_a_number": conversion(linearization=9, value=float("nan")),
    "infinite": conversion(linearization=1, value=float("inf")),
}


# PCI configuration headers (PCI 3.0, 6.1)

def header(vendor, device, kind, status=0x0280, header_type=0, line=11):
    return struct.pack("<HHHH4s4s24s20sIB3s", vendor, device, 7, status, bytes.fromhex(kind),
                       bytes([16, 64, header_type, 0]), struct.pack("<I", 0xE001), b"", 0, line, b"\x01\0\0")[:64]


def reported(headers):
    """With a byte more, so that the report is asked for: the sum of all bytes is a multiple of 16."""
    return headers + bytes([-sum(headers) % 16])


PCI = {
    "bridge": reported(header(0x8086, 0x2570, "02000006") + header(0x8086, 0x2448, "82000406", header_type=1)),
    "controllers": reported(b"".join(header(0x1000, n, f"010000{n:02x}") for n in range(1, 9))),
    "single": header(0x14E4, 0x1648, "03000002", status=0xFFFF),
    "none": reported(b""),
}


# Drives

def drive(media="disk", model="DRIVE 80GB", capacity="156301488", identity=b"\0" * 20 + b"SERIAL-1"):
    return b"\1" + b"".join(text.encode() + b"\n\0" for text in (media, model, capacity)) + counted(identity)


def entry(kind, start, sectors):
    return struct.pack("<BBBBBBBBII", 0, 0, 1, 0, kind, 254, 63, 255, start, sectors)


CYLINDER = 255 * 63
TABLE = entry(0x83, 63, 1000000) + entry(0x82, 1000063, 20000) + entry(0x0F, 2 * CYLINDER, 9 * CYLINDER) + entry(0x07, 0, 1)
CHAIN = (struct.pack("<H", 2) + entry(0x83, 63, CYLINDER) + entry(0x05, CYLINDER, CYLINDER)
         + struct.pack("<H", 4) + entry(0x0B, 63, CYLINDER - 63) + bytes(16))

# More partitions than a record has room for: 4 primary and 9 logical ones on each of four drives.
MANY = entry(0x83, 63, 1000) + entry(0x07, 0, 1) * 2 + entry(0x0F, 2 * CYLINDER, 9 * CYLINDER) + b"".join(
    struct.pack("<H", cylinder) + entry(0x83, 63, 1000) + entry(5, 0, 1) for cylinder in range(2, 11))

DISKS = {
    "many_partitions": drive() * 4 + MANY,
    "one": drive() + b"\0\0\0" + TABLE + CHAIN,
    "four": drive() * 4 + TABLE,
    "optical": drive(media="cdrom") + drive(capacity="0x1000") + b"\0\0" + TABLE + CHAIN,
    "endless": drive() + b"\0\0\0" + entry(0x0F, 0, 1) * 4 + struct.pack("<H", 0) + entry(0x83, 0, 0) + entry(5, 0, 0),
    "long_texts": drive(model="M" * 80, identity=b"S" * 255) + b"\0\0\0" + TABLE,
    "none": b"\0\0\0\0" + TABLE,
}


# Texts of /proc, and of `free`

PROC = {
    "two": b"cpu  1 2 3 4\ncpu0 100 0 50 850 1\ncpu1 7 8 9 10\nintr 1\n\0" + b"1024\n512\n\0",
    "ten": b"".join(b"cpu%d %d 0 0 5\n" % (n, n) for n in range(11)) + b"\0" + b"4294967295\n1\n\0",
    "short": b"cpu0 1\ncpu1\n\0" + b"\n\0",
    "words": b"cpu0 a b c d\0" + b"total\nused\n\0",
    "wide": b"cpu0 4294967295 4294967295 99999999999999999999 -1\0" + b"0\n5\n\0",
}


# A caller's record (bridge/README.md) and the BMC's responses

def caller(command, net_function, data, length=None, room=288, flags=0, time_out=3000, responses=()):
    length = len(data) if length is None else length
    record = struct.pack("<BBBBBxxxIIIIIBxxx", command, 0x20, 0, net_function, 0, 0x1000, length,
                         time_out, 0x2000, 0, 0)
    call = record + data
    # The completion code follows the counted bytes.
    script = b"".join(bytes([len(body)]) + bytes(body) + bytes([completion]) for completion, body in responses)
    return bytes([flags]) + struct.pack("<HH", room, len(call)) + call + script


GET_SDR = bytes.fromhex("0000 0000 00 ff")
PIECES = [(0xCA, b""), (0, b"\1\2"), (0, b"\xff\xff\0\0\x51\1\x0b"), (0, b"\xff\xff" + bytes(11)), (0, b"\xff\xff" + bytes(5))]

REQUESTS = {
    "device_id": caller(0x01, 0x06, b"", responses=[(0, bytes(range(15)))] * 2),
    "whole_record": caller(0x23, 0x0A, GET_SDR, responses=[(0, b"\xff\xff" + RECORDS[0])] * 2),
    "record_in_pieces": caller(0x23, 0x0A, GET_SDR, responses=PIECES * 2),
    "inventory": caller(0x11, 0x0A, b"\0\0\0\x40", responses=[(0xC9, b""), (0, b"\x10" + bytes(16))] * 4),
    "cancelled": caller(0x23, 0x0A, GET_SDR, responses=[(0xCA, b""), (0, b"\1\0"), (0xC5, b"")] * 3),
    "fetch": caller(0x23, 0x0A, b"", length=6, room=0),
    "wrong_length": caller(0x23, 0x0A, b"\0", length=200),
    "wide_caller": caller(0x23, 0x0A, GET_SDR, flags=2),
    "other_command": caller(0x23, 0x0A, GET_SDR, flags=1),
}


# Machine descriptions: those of the tree, without captures

DESCRIPTIONS = {
    folder.name: (folder / "machine.txt").read_bytes()
    for folder in sorted((ROOT / "machines").iterdir()) if not folder.name.startswith("qemu")
}

# Captures: the byte before them says what they are

def dump(entry_and_table):
    """As dmidecode --dump-bin writes it: with the place of the table in the file as its address."""
    written = bytearray(entry_and_table)
    struct.pack_into("<I", written, 24 if written.startswith(b"_SM_") else 8, 32)
    return bytes(written)


def tar(files):
    """As `tar cf` writes it: a file of two blocks for each name, and two empty blocks at the end."""
    out = io.BytesIO()
    with tarfile.open(fileobj=out, mode="w", format=tarfile.USTAR_FORMAT) as archive:
        for name, content in files.items():
            member = tarfile.TarInfo(name)
            member.size = len(content)
            archive.addfile(member, io.BytesIO(content))
    return out.getvalue()[:(2 * len(files) + 2) * 512]


PCI_TEXT = b"".join(b"%02x: " % at + b" ".join(b"%02x" % byte for byte in header(0x14E4, 0x1648, "03000002")[at:at + 16]) + b"\n"
                    for at in range(0, 64, 16))
CAPTURES = {
    "dump": b"\0" + dump(TABLES["whole"]),
    "dump_dmi": b"\1" + dump(TABLES["dmi"]),
    "sdr": b"\2" + full_record(1, 1, 1, "CPU") + full_record(2, 2, 1, "12V"),
    "fru": b"\3" + FRU["whole"],
    "lspci": b"\4" + b"00:1f.0 ISA bridge: A\n\tSubsystem: B\n" + PCI_TEXT + b"\n0000:01:00.0 0200: 14e4:1648\n" + PCI_TEXT,
    "sectors": b"\5" + b"0 " + (bytes(446) + TABLE + b"\x55\xaa").hex().encode() + b"\n",
    "identity": b"\6" + bytes(range(256)) * 2,
    "stat": b"\7" + PROC["two"].partition(b"\0")[0],
    "free": b"\x08" + b"       total used free\nMem: 1024 512 512\nSwap: 0 0 0\n",
    "tar": b"\x09" + tar({"machine/machine.txt": b"memory 64M\n", "machine/ide/ide0/hda/media": b"disk\n"}),
}

# Whole machines

def machine(table, device, drives, sensors):
    return b"".join(struct.pack("<H", len(part)) + part for part in (table, device, drives)) + sensors


HOSTILE_TEXTS = ("<script>alert(1)</script>", "\x1b[31m&amp;\n", "\u00fc\u202e\"'", "]]>--><x y='")
HOSTILE = smbios(structure(0, 0, "01 02 00f0 03 07 0000000000000000 0000", *HOSTILE_TEXTS),
                 structure(1, 1, "01 02 03 04" + "00" * 16 + "06", *HOSTILE_TEXTS),
                 structure(2, 2, "01 02 03 04 05 09 00 0300 0a 00", *HOSTILE_TEXTS), PORT, POWER)
MACHINES = {
    "whole": machine(TABLES["whole"], FRU["whole"], DISKS["one"], REPOSITORY["whole"]),
    "hostile": machine(HOSTILE, inventory(area("17", "<b>", "&"), area("19 000000", *HOSTILE_TEXTS[:1]), PRODUCT),
                       DISKS["four"].replace(b"DRIVE", b"<i>&\""),
                       counted(full_record(0x30, 1, 1, "<u>\"&'</u>")) + b"\0" + READINGS),
    "small": machine(TABLES["short"], b"", DISKS["none"], b"\0"),
    "empty": b"",
}
CALLS = {
    "each_once": bytes([28, *range(28)]) + MACHINES["whole"],
    "release_between": bytes([9, 0, 27, 13, 27, 13, 17, 27, 20, 0]) + MACHINES["whole"],
    "thresholds_first": bytes([5, 17, 13, 18, 19, 14]) + MACHINES["hostile"],
}


TARGETS = {
    "smbios": SMBIOS, "sensor_repository": REPOSITORY, "sensor_replies": REPLIES, "fru": FRU,
    "conversion": CONVERSION, "pci": PCI, "disks": DISKS, "proc_texts": PROC, "requests": REQUESTS,
    "machine_description": DESCRIPTIONS, "captures": CAPTURES, "json": MACHINES, "html": MACHINES, "calls": CALLS,
}


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    for target, inputs in TARGETS.items():
        folder = pathlib.Path(sys.argv[1]) / target
        folder.mkdir(parents=True, exist_ok=True)
        for name, content in inputs.items():
            (folder / name).write_bytes(content)


if __name__ == "__main__":
    main()
