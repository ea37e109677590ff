# SPDX-License-Identifier: MIT
"""Prints the measurements of a run with `speed` as the tables of docs/performance.md.

Usage: speed.py RESULTS
"""

import pathlib
import sys

# The minimum of a scan of 11 buses, 32 devices, 8 functions, 16 double words: for each of them one
# write to the address port and one read from the data port.
LEAST_ACCESSES = 11 * 32 * 8 * 16 * 2

SENSOR_PEERS = ["ipmitool sensor", "ipmitool sdr"]
# Each agent is held against a bare program first, which makes the same accesses and nothing else.
# Like the bare program, the quiet agents print nothing.
PAIRS = [
    ("Starting and ending", "agent, starting and ending", ["bare start"]),
    ("SMBIOS inventory", "quiet agent, SMBIOS", ["bare reads"]),
    ("SMBIOS inventory, printed", "agent, SMBIOS", ["dmidecode", "dmidecode --no-sysfs"]),
    ("SMBIOS, table of 29 KB", "agent, large table", ["dmidecode --from-dump"]),
    ("PCI report", "quiet agent, PCI", ["bare ports"]),
    ("PCI report, printed", "agent, PCI", ["lspci -H1", "lspci -H1 -n"]),
    ("Sensors, first query", "agent, sensors once", ["bare requests once", *SENSOR_PEERS]),
    ("Sensors, second query", "second query", ["bare second query", *SENSOR_PEERS]),
]


def row(*cells):
    print("| " + " | ".join(str(cell) for cell in cells) + " |")


def ratio(ours, theirs):
    return f"**{ours / theirs:.2f}** ({ours:.4g} : {theirs:.4g})" if theirs else ""


def port_accesses(log):
    lines = log.read_text(errors="replace").splitlines()
    return sum("pci-conf-idx" in line or "pci-conf-data" in line for line in lines)


def load(text):
    """The programs, as (milliseconds, system calls, messages to the BMC), and the other values."""
    programs, values = {}, {}
    for line in text.splitlines():
        name, *cells = line.split("\t")
        if len(cells) == 3:
            programs[name] = tuple(map(float, cells))
        else:
            values[name] = float(cells[0])
    for prefix, first in [("", "agent, sensors"), ("bare ", "bare requests")]:
        once, twice = programs[first + " once"], programs[first + " twice"]
        programs[prefix + "second query"] = (values[prefix + "second query"],
                                             twice[1] - once[1], twice[2] - once[2])
    return programs, values


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    results = pathlib.Path(sys.argv[1])
    programs, values = load((results / "speed.txt").read_text())

    row("What", "Beside", "Milliseconds", "System calls", "Messages to the BMC")
    row("---", "---", "---", "---", "---")
    for what, agent, peers in PAIRS:
        for peer in peers if agent in programs else []:
            row(what, peer if peer.startswith("bare") else f"`{peer}`", *map(ratio, programs[agent], programs[peer]))
    print()
    once, second = programs["agent, sensors once"], programs["second query"]
    row("Sensors", "Milliseconds within the agent", "Requests to the device", "Messages to the BMC")
    row("---", "--:", "--:", "--:")
    row("first query", f"{values['first query']:.4g}", int(values["requests once"]), f"{once[2]:g}")
    row("second query", f"{values['second query']:.4g}",
        int(values["requests twice"] - values["requests once"]), f"{second[2]:g}")
    row("bare first query", f"{values['bare first query']:.4g}", int(values["requests once"]), "")

    print()
    row("PCI report", "Accesses to ports 0xCF8 and 0xCFC")
    row("---", "--:")
    row("least for the stated scan", LEAST_ACCESSES)
    row("agent", port_accesses(results / "ports-agent.log"))
    row("`lspci -H1 -n`", port_accesses(results / "ports-lspci.log"))

    print()
    row("Simulated server", "Milliseconds")
    row("---", "--:")
    row("`talvane report --machine full-server`", f"{programs['tool, report of a simulated server'][0]:.4g}")


if __name__ == "__main__":
    main()
