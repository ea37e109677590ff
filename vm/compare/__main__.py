# SPDX-License-Identifier: MIT
"""Compares what the library answered in the emulated machine with what its peers did.

Usage: compare RESULTS

Prints one table, what the checks of the bridge and of the refusing kernel said among it, and an
example for each reason of a difference. Fails when a difference has none.
"""

import json
import pathlib
import re
import sys

import captures
import commands
import inventory
import management
import peers
import table as tables
import uefi


# How many fields each area has at the least. Two sides that both know nothing would agree as well.
LEAST_FIELDS = {
    "SMBIOS": 36, "PCI": 111, "sensors": 225, "threshold list": 130, "threshold set": 7, "watchdog": 15,
    "watchdog at work": 4, "inventory": 12, "drives": 21, "partitions": 24, "load": 5, "bridge": 56,
    "STRICT_DEVMEM": 16, "64-bit kernel": 17, "64-bit bridge": 56, "host": 63, "64-bit host": 63,
    "UEFI SMBIOS": 39, "UEFI PCI": 174, "UEFI sensors": 225, "UEFI thresholds": 130,
    "UEFI inventory": 12, "UEFI drives": 24, "UEFI partitions": 38, "UEFI ways": 102,
    "UEFI doctor": 74, "UEFI load": 5, "talvane sensors": 187, "talvane health": 35,
    "talvane metrics": 124, "report --html": 38, "PCI names": 50, "get, --watch": 7,
    "doctor in words": 3, "JSON": 32, "captures": 161, "redacted capture": 13,
}


def load(table, area, results):
    compare = lambda *args, **more: table.compare(area, "top, free", *args, **more)
    answer = json.loads((results / "load.json").read_text())["load"]
    shares = peers.top((results / "top.txt").read_text())
    busy = [share["value"] for share in answer["processors"]]
    compare("processors", len(busy), len(shares))
    for number, (ours, theirs) in enumerate(zip(busy, shares)):
        # The two look at moments of their own, so a few percent lie between them.
        close = abs(ours - theirs) <= 10
        compare(f"processor {number}", close or f"{ours} %", True if close else f"{theirs:.1f} %")
    compare("processor 1, kept busy", busy[1] >= 95, True)
    memory = json.loads((results / "memory.json").read_text())["load"]["memory"]["value"]
    expected = peers.memory_percent((results / "free.txt").read_text())
    close = abs(memory - expected) <= 1  # the tool itself takes memory
    compare("memory", close or memory, True if close else expected)


def refusing_kernel(table, relaxed, results):
    """A kernel that refuses the library's read: SMBIOS is missing, the rest is as elsewhere."""
    compare = lambda *args: table.compare("STRICT_DEVMEM", "32-bit kernel", *args)
    report = json.loads((results / "report.json").read_text())
    for name in ("system", "board", "cpu", "memory", "ports", "power", "fans"):
        compare(f"{name} missing", report[name], None)
    compare("reason", [error["source"] for error in report["errors"]], ["/dev/mem"])
    compare("exit status", (results / "report.status").read_text().strip(), "1")
    for name in ("sensors", "thresholds", "bmc", "pci", "drives", "partitions"):
        compare(name, report[name], relaxed[name])
    compare("dmidecode has its table from the kernel",
            bool(peers.dmidecode((results / "dmidecode.txt").read_text())), True)


def wide_kernel(table, report, results):
    """A 64-bit kernel, with the bridge as a 64-bit program: the same machine, so the same answers."""
    wide = json.loads((results / "report.json").read_text())
    for name in report:
        if name not in ("load", "ways"):
            table.compare("64-bit kernel", "32-bit kernel", name, wide[name], report[name])


def by_serial_number(report, direct):
    """Drives and partitions of a report, with the devices that the same disks have in another one."""
    place = {drive["serialNumber"]: drive for drive in direct["drives"]}
    device = {drive["device"]: place[drive["serialNumber"]]["device"] for drive in report["drives"]}
    drives = [drive | {"device": device[drive["device"]],
                       "position": place[drive["serialNumber"]]["position"]}
              for drive in report["drives"]]
    partitions = [entry | {"device": device[entry["device"][:8]] + entry["device"][8:]}
                  for entry in report["partitions"]]
    order = lambda entry: entry["device"][:8]  # by disks, and as listed within one
    return sorted(drives, key=order), sorted(partitions, key=order)


def through_kernel(table, area, direct, results):
    """What is read through the kernel's own interfaces, beside what was read directly."""
    compare = lambda *args: table.compare(area, "directly read", *args)
    for name in ("host", "chosen", "agent"):
        report = json.loads((results / f"{name}.json").read_text())
        report["drives"], report["partitions"] = by_serial_number(report, direct)
        for member in direct:
            if member not in ("load", "ways"):
                compare(f"{name}: {member}", report[member], direct[member])
    chosen = json.loads((results / "chosen.json").read_text())["ways"]
    smbios = "host" if results.name == "strict" else "direct"  # whatever the kernel grants
    for name, way in {"smbios": smbios, "bmc": "direct", "pci": "direct", "drives": "host", "load": "direct"}.items():
        compare(f"way of {name}", chosen[name]["way"], way)
    nobody = json.loads((results / "nobody.json").read_text())
    compare("nobody: pci", nobody["pci"], direct["pci"])
    compare("nobody: models", sorted(drive["model"] for drive in nobody["drives"]),
            sorted(drive["model"] for drive in direct["drives"]))
    compare("nobody: not read", [error["source"] for error in nobody["errors"]],
            ["/sys/firmware/dmi/tables", "/dev/ipmi0", "/dev/sda, /dev/sdb, /dev/sdc, /dev/sdd"])
    compare("nobody: status", (results / "nobody.status").read_text().strip(), "1")


def bridge(table, area, results):
    compare = lambda *args: table.compare(area, "expectation", *args)
    for line in (results / "bridge-checks.txt").read_text().splitlines():
        found = re.match(r"(ok|FAILED) +(.*)", line)
        if found:
            compare(found.group(2), found.group(1), "ok")
    for name, value in peers.facts((results / "bridge-rights.txt").read_text()).items():
        if name in ("Uid", "Gid"):  # real, effective, saved, and that of files
            compare(f"rights: {name}", value.split(), ["990"] * 4)
        else:
            compare(f"rights: {name}", int(value, 16), 1 if name == "NoNewPrivs" else 0)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    results = pathlib.Path(sys.argv[1])
    relaxed = results / "relaxed"
    read = lambda name: (relaxed / name).read_text()
    report = json.loads(read("report.json"))
    records = peers.ipmitool_records(read("sensors-verbose.txt"))
    sensors = peers.ipmitool_sensors(read("sensors.txt"), records)

    table = tables.Table()
    inventory.smbios(table, "SMBIOS", report, read("dmidecode.txt"))
    inventory.pci(table, "PCI", report, peers.lspci(read("lspci.txt")),
                  peers.lspci_bytes(read("lspci-bytes.txt")))
    management.sensors(table, "sensors", json.loads(read("library-sensors.json")), sensors)
    management.thresholds(table, "threshold list", report, records, sensors)
    management.set_threshold(table, read("threshold-before.txt"), read("threshold-after.txt"))
    management.watchdog(table, relaxed)
    management.watchdog_at_work(table, (results / "strict/serial.log").read_text())
    management.inventory(table, "inventory", report, read("inventory.txt"), read("controller.txt"))
    inventory.drives(table, report, relaxed)
    listed = {entry["device"]: entry for entry in report["partitions"]}
    inventory.partitions(table, "partitions", listed,
                         json.loads(read("partitions.json"))["partitiontable"], "/dev/hdb")
    table.compare("partitions", "fdisk", "others", list(listed), [])
    load(table, "load", relaxed)
    bridge(table, "bridge", relaxed)
    refusing_kernel(table, report, results / "strict")
    through_kernel(table, "host", report, results / "strict")
    wide_kernel(table, report, results / "wide")
    through_kernel(table, "64-bit host", report, results / "wide")
    bridge(table, "64-bit bridge", results / "wide")
    uefi.compare(table, results / "uefi")
    load(table, "UEFI load", results / "uefi")
    commands.compare(table, results / "uefi")
    captures.compare(table, results)
    commands.schema(table, results)

    print(table.text())
    print()
    for line in table.examples():
        print(line)
    missing = [f"{area}: {table.fields(area)} fields, not {least}"
               for area, least in LEAST_FIELDS.items() if table.fields(area) < least]
    if missing:
        print("\nLess was compared than there is to compare:", *missing, sep="\n", file=sys.stderr)
    if table.unexplained:
        print(f"\n{len(table.unexplained)} differences are not explained", file=sys.stderr)
    if missing or table.unexplained:
        sys.exit(1)


if __name__ == "__main__":
    main()
