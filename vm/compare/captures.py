# SPDX-License-Identifier: MIT
"""Captures of the machines: each was replayed in its machine, and reported what the machine did."""

import json
import tarfile

# By kind of machine: each capture, and the report of the same ways.
CAPTURES = {"strict": {"direct": "report", "host": "host"}, "relaxed": {"direct": "report"},
            "wide": {"direct": "report", "host": "host"},
            "uefi": {"host": "host", "chosen": "chosen"}}


def serial_numbers(member):
    """All that a report names so, whatever it belongs to."""
    if isinstance(member, list):
        return [number for entry in member for number in serial_numbers(entry)]
    if not isinstance(member, dict):
        return []
    return [number for name, entry in member.items()
            for number in ([entry] if name.startswith("serialNumber") and isinstance(entry, str)
                           else serial_numbers(entry))]


def replays(table, results):
    for kind, captures in CAPTURES.items():
        for name, home in captures.items():
            compare = lambda field, *args: table.compare("captures", "the machine itself",
                                                         f"{kind} {name}: {field}", *args)
            read = lambda file: (results / kind / file).read_text()
            there, here = json.loads(read(f"{home}.json")), json.loads(read(f"replay-{name}.json"))
            compare("members", list(here), list(there))
            for member in there:
                if member != "load":  # it is that of its moment
                    compare(member, here.get(member), there[member])
            compare("complaints", read(f"replay-{name}.json.errors"), read(f"{home}.json.errors"))
            compare("status", read(f"replay-{name}.status").strip(), "1" if there["errors"] else "0")
            compare("status of the capture", read(f"capture-{name}.status").strip(),
                    "1" if there["errors"] else "0")


def swapped(text):
    """As an identity block has it: the bytes of each word the other way round."""
    even = text + " " * (len(text) % 2)
    return "".join(even[at + 1] + even[at] for at in range(0, len(even), 2))


def redaction(table, results):
    compare = lambda *args: table.compare("redacted capture", "the machine itself", *args)
    read = lambda name: json.loads((results / name).read_text())
    secrets = serial_numbers(read("host.json"))
    marks = serial_numbers(read("replay-redacted.json"))
    compare("lengths", [len(mark) for mark in marks], [len(secret) for secret in secrets])
    with tarfile.open(results / "redacted.tar.gz") as archive:
        files = {entry.name: archive.extractfile(entry).read() for entry in archive if entry.isfile()}
    for secret in secrets:
        found = [name for name, content in files.items()
                 if secret.encode() in content or swapped(secret).encode() in content]
        compare(f"{secret} is in", found, [])


def compare(table, results):
    replays(table, results)
    redaction(table, results / "uefi")
