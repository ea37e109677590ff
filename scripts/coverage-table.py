#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Sums up what `llvm-cov show --show-branches=count` prints: a table of the rooms, and what is missed.

A branch is one outcome of a condition, or of a case of a switch: true or false. What a line of the
sources excludes does not count, and each exclusion gives its reason on the line:
    // LCOV_EXCL_BR_LINE: reason     the branches of this line
    // LCOV_EXCL_START: reason       these lines
    // LCOV_EXCL_STOP
Fails when an exclusion has no reason, or excludes nothing that is missed.
Usage: coverage-table.py [--missed ROOM]... <TEXT; ROOM's misses are listed, besides the library's.
"""
import argparse
import os
import re
import sys

LIBRARY = ("the root", "SmBios", "IPMI", "PCI", "storage", "load", "interface", "base")
ROOMS = LIBRARY + ("bridge", "transport", "archive", "tools", "simulator")

FILE = re.compile(r"^(/.*\.(?:cpp|h)):$")
LINE = re.compile(r"^ *(\d+)\| *([^ |]+)\|")
BRANCH = re.compile(r"^  \|  Branch \((\d+):(\d+)\): \[True: ([^,]+), False: ([^\]]+)\]")
EXCLUSION = re.compile(r"// LCOV_EXCL_(BR_LINE|START|STOP)(?:: (\S.*))?")


def room_of(path):
    return path.split("/")[0] if "/" in path else "the root"


class Room:
    def __init__(self):
        self.lines = self.lines_taken = self.branches = self.branches_taken = 0


def exclusions_of(path, faults):
    """Returns by what line each excluded line is excluded."""
    excluded = {}
    start = None
    with open(path, encoding="utf-8") as source:
        for number, text in enumerate(source, 1):
            match = EXCLUSION.search(text)
            kind = match[1] if match else None
            if kind in ("BR_LINE", "START"):
                start = number
                if not match[2]:
                    faults.append(f"{path}:{number}: the exclusion has no reason")
            if start:
                excluded[number] = start
            if kind in ("BR_LINE", "STOP"):
                start = None
    return excluded


class Summary:
    def __init__(self):
        self.rooms = {}
        self.missed = {}
        self.faults = []

    def add_file(self, path, lines, branches):
        """lines: number -> whether it was run; branches: number -> {column: both outcomes}."""
        room = self.rooms.setdefault(room_of(path), Room())
        missed = self.missed.setdefault(room_of(path), [])
        excluded = exclusions_of(path, self.faults)
        needless = set(excluded.values())
        for number, run in sorted(lines.items()):
            outcomes = sorted(branches.get(number, {}).items())
            never = [] if run else [f"{path}:{number}: never run"]
            never += [f"{path}:{number}:{column}: never {name}" for column, pair in outcomes
                      for name, taken in zip(("true", "false"), pair) if not taken]
            if number in excluded:
                if never:
                    needless.discard(excluded[number])
                continue
            room.lines += 1
            room.lines_taken += run
            room.branches += 2 * len(outcomes)
            room.branches_taken += sum(sum(pair) for _, pair in outcomes)
            missed += never
        self.faults += [f"{path}:{number}: excludes nothing that is missed" for number in needless]


def read(stream, summary):
    root = os.getcwd() + "/"
    files = {}
    for text in stream:
        if match := FILE.match(text):  # a file comes twice when compilers were given two paths to it
            lines, branches = files.setdefault(match[1].removeprefix(root), ({}, {}))
        elif match := LINE.match(text):
            number = int(match[1])
            lines[number] = lines.get(number, False) or match[2] != "0"
        elif match := BRANCH.match(text):
            pair = branches.setdefault(int(match[1]), {}).setdefault(int(match[2]), [False, False])
            for i in (0, 1):  # a template's conditions come once for each use of it
                pair[i] = pair[i] or match[3 + i] != "0"
    for path, (lines, branches) in sorted(files.items()):
        if room_of(path) in ROOMS:
            summary.add_file(path, lines, branches)


def share(part, whole):
    return f"{100 * part / whole:.1f} %" if whole else "-"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--missed", action="append", default=[], metavar="ROOM", choices=ROOMS)
    arguments = parser.parse_args()
    summary = Summary()
    read(sys.stdin, summary)

    print(f"{'Room':12} {'lines':>20} {'branches':>20}")
    for name in ROOMS:
        room = summary.rooms.get(name, Room())
        print(f"{name:12} {share(room.lines_taken, room.lines):>9} {f'of {room.lines}':>10} "
              f"{share(room.branches_taken, room.branches):>9} {f'of {room.branches}':>10}")
    missed = [line for name in LIBRARY + tuple(arguments.missed)
              for line in summary.missed.get(name, [])]
    print("\nMissed:" if missed else "\nNothing is missed in the library.")
    print("\n".join(missed))
    if summary.faults:
        sys.exit("\n".join(summary.faults))


if __name__ == "__main__":
    main()
