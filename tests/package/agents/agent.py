# SPDX-License-Identifier: MIT
"""An agent in Python: asks for the server's board. Usage: agent.py LIBRARY"""

import ctypes
import sys

BOARD = 0x10000
MANUFACTURER = 160  # offset in the record of 208 bytes

library = ctypes.CDLL(sys.argv[1])
record = ctypes.create_string_buffer(208)
assert library.GetInfo(ctypes.c_ulong(BOARD), record) == 0
manufacturer = record.raw[MANUFACTURER:].split(b"\0")[0]
assert manufacturer == b"Acme", manufacturer
assert library.release() == 0
with open("/proc/self/maps") as maps:
    assert "libstdc++" not in maps.read()
