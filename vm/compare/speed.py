# SPDX-License-Identifier: MIT
"""Prints the measurements of a run with `speed` as the tables of docs/performance.md.

Usage: speed.py RESULTS
"""

import pathlib
import sys

# The minimum of the stated scan: 11 buses, 32 devices, 8 functions, 16 double words, each one write
# to the address port and one read from the data port.
STATED_ACCESSES = 11 * 32 * 8 * 16 * 2

PAIRS = [
    ("SMBIOS inventory", "agent, SMBIOS", ["dmidecode", "dmidecode --no-sysfs"]),
    ("PCI report", "agent, PCI", ["lspci -H1", "lspci -H1 -n"]),
    ("Sensors, first query", "agent, sensors once", ["ipmitool sensor", "ipmitool sdr"]),
]


def ratio(ours, theirs):
    return f"{ours / theirs:.2f}" if theirs else "-"


def row(*cells):
    print("| " + " | ".join(str(cell) for cell in cells) + " |")


def port_accesses(log):
    lines = log.read_text(errors="replace").splitlines()
    return sum("pci-conf-idx" in line or "pci-conf-data" in line for line in lines)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    results = pathlib.Path(sys.argv[1])
    programs, values = {}, {}
    for line in (results / "speed.txt").read_text().splitlines():
        name, *cells = line.split("\t")
        if len(cells) == 3:
            programs[name] = (float(cells[0]), int(cells[1]), int(cells[2]))
        else:
            values[name] = float(cells[0])

    row("What", "Program", "ms", "ratio", "System calls", "ratio", "Messages to the BMC", "ratio")
    row("---", "---", "--:", "--:", "--:", "--:", "--:", "--:")
    for what, agent, peers in PAIRS:
        ours = programs[agent]
        row(what, "agent", ours[0], "", ours[1], "", ours[2], "")
        for peer in peers:
            theirs = programs[peer]
            row("", f"`{peer}`", theirs[0], ratio(ours[0], theirs[0]), theirs[1],
                ratio(ours[1], theirs[1]), theirs[2], ratio(ours[2], theirs[2]))
    start = programs["agent, starting and ending"]
    row("Starting and ending", "agent", start[0], "", start[1], "", start[2], "")

    once, twice = programs["agent, sensors once"], programs["agent, sensors twice"]
    print()
    row("Sensors", "ms within the agent", "Requests to the device", "Messages to the BMC")
    row("---", "--:", "--:", "--:")
    row("first query", round(values["first query"], 1), int(values["requests once"]), once[2])
    row("second query", round(values["second query"], 1),
        int(values["requests twice"] - values["requests once"]), twice[2] - once[2])

    print()
    row("PCI report", "Accesses to ports 0xCF8 and 0xCFC")
    row("---", "--:")
    row("stated", STATED_ACCESSES)
    row("agent", port_accesses(results / "ports-agent.log"))
    row("`lspci -H1 -n`", port_accesses(results / "ports-lspci.log"))


if __name__ == "__main__":
    main()
