# SPDX-License-Identifier: MIT
"""The machine with UEFI: all that is read through the kernel's own interfaces, beside the peers."""

import json

import inventory
import management
import peers

# The order that the disks get their places in; a fifth one gets none.
DISKS = ["sda", "sdb", "nvme0n1", "vda"]
DEVICES = ["/dev/hda", "/dev/hdb", "/dev/hdc", "/dev/hdd"]


def drives(table, report, results, disks):
    """SATA disks have an identity block for hdparm; of the others lsblk says what sysfs does."""
    ours = report["drives"]
    compare = lambda *args, **more: table.compare("UEFI drives", "hdparm, lsblk", *args, **more)
    compare("devices", [drive["device"] for drive in ours], DEVICES)
    compare("places", report["ways"]["drives"]["note"],
            ", ".join(f"{device[5:]} is {disk}" for device, disk in zip(DEVICES, DISKS)))
    for drive, disk, position in zip(ours, DISKS, inventory.POSITIONS):
        theirs = disks[disk]
        compare(f"{disk} position", drive["position"], position)
        model = drive["model"] or ""
        compare(f"{disk} model", model, theirs["model"],
                explained=[("model-of-16-characters", disk.startswith("sd")
                            and model[:16].strip() == theirs["model"])])
        compare(f"{disk} size", peers.text(drive["size"]), theirs["size"])
        identity = results / f"drive-{disk}.txt"
        if identity.exists():
            inventory.drive(compare, disk, drive, identity.read_text(), theirs["size"])
    compare("nvme0n1 serial number", ours[2]["serialNumber"], disks["nvme0n1"]["serial"])
    compare("vda serial number", ours[3]["serialNumber"], "PL00001")


def partitions(table, report, results, disks):
    listed = {entry["device"]: entry for entry in report["partitions"]}
    for file in sorted(results.glob("partitions-*.json")):
        disk = file.stem.removeprefix("partitions-")
        made = json.loads(file.read_text())["partitiontable"]
        # The kernel shows no more of an extended partition than its boot record.
        sizes = {number: size for number, size in disks[disk]["partitions"].items()
                 if made["partitions"][number - 1]["type"] != "f"}
        for number, size in sizes.items():
            table.compare("UEFI partitions", "fdisk", f"{disk} {number}: fdisk and lsblk", size,
                          str(made["partitions"][number - 1]["size"] * 512))
        inventory.partitions(table, "UEFI partitions", listed, made,
                             DEVICES[DISKS.index(disk)])
    table.compare("UEFI partitions", "fdisk", "others", list(listed), [])


def ways(table, results, report, disks):
    """Each report of the machine, and the ways that it was read by."""
    compare = lambda *args: table.compare("UEFI ways", "talvane --host", *args)
    load = lambda name: json.loads((results / f"{name}.json").read_text())
    granted = {"smbios": "host", "bmc": "host", "pci": "direct", "drives": "host", "load": "direct"}
    for name, expected in (("host", granted | {"pci": "host"}), ("chosen", granted),
                           ("agent", granted | {"pci": "host"}), ("locked", granted | {"pci": "host"})):
        other = load(name)
        for area, way in expected.items():
            compare(f"{name}: way of {area}", other["ways"][area]["way"], way)
        compare(f"{name}: errors", other["errors"], [])
        for member in report:
            if member not in ("load", "ways"):
                compare(f"{name}: {member}", other[member], report[member])
    nobody = load("nobody")
    for member in ("pci", "load"):
        compare(f"nobody: {member} is there", bool(nobody[member]), True)
    compare("nobody: pci", nobody["pci"], report["pci"])
    compare("nobody: models", [drive["model"] or "" for drive in nobody["drives"]],
            [disks[disk]["model"] for disk in DISKS])
    compare("nobody: not read", [error["source"] for error in nobody["errors"]],
            ["/sys/firmware/dmi/tables", "/dev/ipmi0",
             ", ".join(f"/dev/{disk}" for disk in DISKS)])
    compare("nobody: status", (results / "nobody.status").read_text().strip(), "1")


# What the doctor finds, with the call that shows it, before the kernel is locked down and after.
FINDINGS = {
    "doctor": {"memory-read": "read(/dev/mem)", "uefi": None, "bridge": "open(/dev/ipmi)",
               "proc-ide": "opendir(/proc/ide)"},
    "locked-doctor": {"lockdown": None, "memory-device": "open(/dev/mem)", "uefi": None,
                      "ports": "iopl", "bridge": "open(/dev/ipmi)", "proc-ide": "opendir(/proc/ide)"},
}


def doctor(table, results):
    compare = lambda *args: table.compare("UEFI doctor", "expectation", *args)
    for name, expected in FINDINGS.items():
        answer = json.loads((results / f"{name}.json").read_text())["doctor"]
        compare(f"{name}: well", answer["well"], True)
        compare(f"{name}: status", (results / f"{name}.status").read_text().strip(), "0")
        for check in answer["checks"]:
            finding = check["finding"]
            compare(f"{name}: {check['name']} passed", check["passed"], check["name"] not in expected)
            if finding is not None:
                compare(f"{name}: {check['name']} call", finding["call"],
                        expected.get(check["name"]))
                compare(f"{name}: {check['name']} stops the tool", finding["stopsTool"], False)


def compare(table, results):
    read = lambda name: (results / name).read_text()
    report = json.loads(read("host.json"))
    records = peers.ipmitool_records(read("sensors-verbose.txt"))
    sensors = peers.ipmitool_sensors(read("sensors.txt"), records)
    disks = peers.lsblk(read("disks.json"))
    spaces = peers.lspci_bytes(read("lspci-bytes.txt"))
    inventory.smbios(table, "UEFI SMBIOS", report, read("dmidecode.txt"))
    inventory.pci(table, "UEFI PCI", report, peers.lspci(read("lspci.txt")), spaces)
    table.compare("UEFI PCI", "lspci", "functions left out", report["ways"]["pci"]["note"],
                  f"{sum(int(address[:2], 16) > inventory.LAST_BUS for address in spaces)} outside "
                  "of buses 0 to 10 of domain 0 left out")
    management.sensors(table, "UEFI sensors", json.loads(read("library-sensors.json")), sensors)
    management.thresholds(table, "UEFI thresholds", report, records, sensors)
    management.inventory(table, "UEFI inventory", report, read("inventory.txt"),
                         read("controller.txt"))
    drives(table, report, results, disks)
    partitions(table, report, results, disks)
    ways(table, results, report, disks)
    doctor(table, results)
