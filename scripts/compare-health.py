#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares the verdicts of `talvane health` with those of FreeIPMI's ipmi-sensors.

For each simulator configuration (NAME.emu, with the records in NAME.sdr.bin) in a folder, OpenIPMI's
ipmi_sim plays the controller. ipmi-sensors judges its sensors. What the controller answers for each
sensor is copied into a machine folder, and talvane judges the sensors of that machine. Prints how
often the verdicts agree and which rule explains each difference. Fails when a difference has no rule.

Usage: compare-health.py FOLDER TALVANE [--list]. Takes the packages openipmi and freeipmi-tools.
"""

import collections
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

PORT = 9623
LAN = f"""name "compare"
set_working_mc 0x20
  startlan 1
    addr 127.0.0.1 {PORT}
    priv_limit admin
    allowed_auths_admin none md2 md5 straight
    guid a123456789abcdefa123456789abcdef
  endlan
  user 2 true "admin" "test" admin 10 none md2 md5 straight
"""
OURS = {"OK": "Nominal", "WARNING": "Warning", "CRITICAL": "Critical", "UNKNOWN": "N/A", None: "N/A"}
BMC, FULL, COMPACT, EVENT_ONLY = 0x20, 1, 2, 3
SCANNED, UNAVAILABLE = 0x40, 0x20

# Why a verdict differs: what it takes, and the reason.
RULES = [
    ("an absent part is no fault",
     lambda ours, theirs: ours["reason"] == "absent" and theirs in ("Critical", "Warning")),
    ("a sensor of an absent part, which FreeIPMI does not judge",
     lambda ours, theirs: ours["reason"] == "absent" and theirs == "N/A"),
    ("the reading has reached a threshold that the controller holds and does not report",
     lambda ours, theirs: " threshold is " in ours["reason"] and theirs == "Nominal"),
    ("no state is asserted, of a kind of sensor that FreeIPMI does not judge",
     lambda ours, theirs: ours["reason"] == "no state asserted" and theirs == "N/A"),
    ("beside states of the standard there is one that it does not define: FreeIPMI judges none",
     lambda ours, theirs: theirs == "N/A" and ours["verdict"] in ("CRITICAL", "WARNING")
     and any(state.startswith("state ") for state in ours["states"])),
]


def records(dump):
    """The records of a repository dump, as bytes."""
    while dump:
        size = 5 + dump[4]
        yield dump[:size]
        dump = dump[size:]


def sensors_of_bmc(dump):
    """Pairs of sensor number and whether it has thresholds, of the controller's own sensors."""
    for record in records(dump):
        if record[3] not in (FULL, COMPACT) or record[5] != BMC:
            continue
        shared = max(record[23] & 0x0F, 1) if record[3] == COMPACT else 1
        for i in range(shared):
            yield (record[7] + i) & 0xFF, record[13] == 1


class Peer:
    """FreeIPMI's programs, talking to the simulated controller."""

    def __init__(self, folder):
        self.options = ["-h", f"127.0.0.1:{PORT}", "-u", "admin", "-p", "test", "-l", "admin"]
        self.folder = folder

    def run(self, program, *arguments):
        done = subprocess.run([program, *self.options, *arguments], capture_output=True, text=True,
                              timeout=120, check=False)
        if done.returncode != 0:
            sys.exit(f"{program}: {done.stderr}")
        return done.stdout

    def verdicts(self):
        """Pairs of name and state of all sensors, in the repository's order."""
        text = self.run("ipmi-sensors", "--output-sensor-state", "--comma-separated-output",
                        "--no-header-output", "--quiet-cache", "--shared-sensors",
                        f"--sdr-cache-directory={self.folder}")
        rows = [line.split(",") for line in text.splitlines()]
        return [(row[1], row[3]) for row in rows]

    def answers(self, requests):
        """The bytes after the completion code of raw requests; None where it is not 0."""
        file = self.folder / "requests"
        file.write_text("".join(f"{request}\n" for request in requests))
        answers = []
        for line in self.run("ipmi-raw", f"--file={file}").splitlines():
            codes = [int(word, 16) for word in line.split(":")[1].split()]
            answers.append(codes[2:] if codes[1] == 0 else None)
        return answers


def machine_text(dump, peer):
    """The controller as a machine file describes it."""
    lines = ["bmc kcs", "sdr records"]
    sensors = list(dict(sensors_of_bmc(dump)).items())
    readings = peer.answers([f"0 4 2d {number:x}" for number, _ in sensors])
    limits = peer.answers([f"0 4 27 {number:x}" for number, _ in sensors])
    for (number, has_thresholds), reading, limit in zip(sensors, readings, limits):
        read = reading and reading[1] & SCANNED and not reading[1] & UNAVAILABLE
        lines.append(f"reading {number} {reading[0] if read else 'unavailable'}")
        if read:
            states = (reading + [0, 0])[2:4]
            lines.append(f"states {number} {states[0]} {states[1] & 0x7F}")
        if has_thresholds and limit:
            lines.append(f"thresholds {number} " + " ".join(str(byte) for byte in limit[:7]))
    return "".join(line + "\n" for line in lines)


def compare(emu, talvane, folder):
    """Pairs of our judgement of a sensor and FreeIPMI's state."""
    (folder / "lan.conf").write_text(LAN)
    (folder / "state").mkdir()
    dump = emu.with_suffix(".sdr.bin").read_bytes()
    with open(folder / "log", "w", encoding="utf-8") as log:
        simulator = subprocess.Popen(
            ["ipmi_sim", "-c", folder / "lan.conf", "-f", emu, "-s", folder / "state", "-n"],
            stdout=log, stderr=log)
    try:
        time.sleep(3)
        peer = Peer(folder)
        theirs = peer.verdicts()
        (folder / "machine.txt").write_text(machine_text(dump, peer))
    finally:
        simulator.terminate()
        simulator.wait()
    (folder / "records").write_bytes(dump)
    done = subprocess.run([talvane, "health", "--json", "--machine", folder], capture_output=True,
                          text=True, timeout=300, check=False)
    ours = json.loads(done.stdout)["health"]["sensors"]
    # Sensors that only send events have no reading; ipmi-sensors leaves them out.
    ours = [our for our in ours if our["reason"] != "sends events only"]
    if len(ours) != len(theirs):
        sys.exit(f"{emu.name}: {len(ours)} sensors here, {len(theirs)} there")
    return [(our, state) for our, (_, state) in zip(ours, theirs)]


def main():
    folder, talvane = pathlib.Path(sys.argv[1]), sys.argv[2]
    lists_all = "--list" in sys.argv
    unexplained = 0
    for emu in sorted(folder.glob("*.emu")):
        counts = collections.Counter()
        with tempfile.TemporaryDirectory() as temporary:
            os.environ["HOME"] = temporary
            pairs = compare(emu, talvane, pathlib.Path(temporary))
        for ours, theirs in pairs:
            if OURS[ours["verdict"]] == theirs:
                counts["the same verdict"] += 1
                continue
            rule = next((text for text, fits in RULES if fits(ours, theirs)), None)
            counts[rule or "no rule"] += 1
            if rule is None or lists_all:
                print(f"  {ours['name']}: {ours['verdict']} ({ours['reason']}), FreeIPMI {theirs}; "
                      f"type {ours['type']['name']}, {ours['eventType']['name']}")
            unexplained += rule is None
        print(f"{emu.stem}: {len(pairs)} sensors")
        for text, count in counts.most_common():
            print(f"  {count:4} {text}")
    sys.exit(1 if unexplained else 0)


if __name__ == "__main__":
    main()
