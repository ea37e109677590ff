#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Keeps many small inputs in one file: each is its length in two bytes, low one first, and its bytes.

Usage: pack.py pack FOLDER FILE     the inputs in the folder, those with the same bytes once
       pack.py unpack FILE FOLDER   each as a file of its own
"""

import hashlib
import pathlib
import struct
import sys


def pack(folder, file):
    inputs = sorted({path.read_bytes() for path in pathlib.Path(folder).iterdir()})
    pathlib.Path(file).write_bytes(b"".join(struct.pack("<H", len(one)) + one for one in inputs))


def unpack(file, folder):
    content = pathlib.Path(file).read_bytes()
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    at = 0
    while at < len(content):
        (length,) = struct.unpack_from("<H", content, at)
        one = content[at + 2:at + 2 + length]
        (folder / hashlib.sha1(one).hexdigest()).write_bytes(one)
        at += 2 + length


def main():
    actions = {"pack": pack, "unpack": unpack}
    if len(sys.argv) != 4 or sys.argv[1] not in actions:
        sys.exit(__doc__)
    actions[sys.argv[1]](*sys.argv[2:])


if __name__ == "__main__":
    main()
