# SPDX-License-Identifier: MIT
"""SMBIOS beside dmidecode, PCI beside lspci, drives and partitions beside hdparm and sfdisk."""

import json

import peers

# What the library calls the device classes of this machine: class and sub-class name by code.
CLASS_NAMES = {
    "0101": ("Mass storage controller", "IDE controller"),
    "0200": ("Network controller", "Ethernet controller"),
    "0300": ("Display controller", "VGA-compatible controller"),
    "0600": ("Bridge device", "Host bridge"),
    "0601": ("Bridge device", "ISA bridge"),
    "0604": ("Bridge device", "PCI-to-PCI bridge"),
    "0680": ("Bridge device", "Other bridge device"),
    "0700": ("Simple communication controllers", "16550-compatible serial controller"),
    "0c03": ("Serial bus controllers", "Universal Serial Bus"),
}
STATUS_BITS = [
    (0x0008, "Interrupt Status"), (0x0010, "Capabilities List"), (0x0020, "66 MHz Capable"),
    (0x0080, "Fast Back-to-Back Capable"), (0x0100, "Master Data Parity Error"),
    (0x0600, None),
    (0x0800, "Signaled Target Abort"), (0x1000, "Received Target Abort"),
    (0x2000, "Received Master Abort"), (0x4000, "Signaled system Error"),
    (0x8000, "Detected Parity Error"),
]
SPEEDS = {0: "Speed=Fast;", 1: "Speed=Medium;", 2: "Speed=Slow;", 3: ""}


def smbios(table, report, text):
    structures = peers.dmidecode(text)
    of_type = lambda wanted: [fields for kind, fields in structures if kind == wanted]
    compare = lambda *args, **more: table.compare("SMBIOS", "dmidecode", *args, **more)

    bios, system, board = of_type(0)[0], of_type(1)[0], of_type(2)[0]
    ours = report["board"]
    compare("BIOS vendor", ours["bios"]["vendor"], bios["Vendor"])
    compare("BIOS version", ours["bios"]["version"], bios["Version"])
    compare("BIOS date", ours["bios"]["releaseDate"], bios["Release Date"])
    compare("board maker", ours["manufacturer"], board["Manufacturer"])
    compare("board product", ours["product"], board["Product Name"])
    compare("board serial number", ours["serialNumber"], board["Serial Number"])
    ours = report["system"]
    compare("system maker", ours["manufacturer"], system["Manufacturer"])
    compare("system product", ours["product"], system["Product Name"])
    compare("system version", ours["version"], system["Version"])

    # dmidecode counts memory in transfers since SMBIOS 3.1 renamed what it always meant.
    clock = lambda text: text.replace("MHz", "MHZ").replace("MT/s", "MHZ")
    compare("processors", len(report["cpu"]), len(of_type(4)))
    for ours, theirs in zip(report["cpu"], of_type(4)):
        compare("processor family", ours["family"], theirs["Family"])
        compare("processor maker", ours["manufacturer"], theirs["Manufacturer"])
        compare("processor speed", peers.text(ours["currentSpeed"]), clock(theirs["Current Speed"]))
        compare("processor maximum", peers.text(ours["maximumSpeed"]), clock(theirs["Max Speed"]))
        compare("processor clock", peers.text(ours["externalClock"]), clock(theirs["External Clock"]),
                explained=[("zero-clock", theirs["External Clock"] == "Unknown"
                            and peers.text(ours["externalClock"]) == "0 MHZ")])
        compare("processor disabled", ours["disabled"], "Disabled" in theirs["Status"])
        for cache in ours["caches"]:
            handle = theirs[f"L{cache['level']} Cache Handle"]
            compare(f"level {cache['level']} cache", peers.text(cache["maximumSize"]), handle,
                    explained=[("cache-not-provided", handle == "Not Provided"
                                and peers.text(cache["maximumSize"]) == "Bios Not Provide")])

    devices = of_type(17)
    compare("memory banks", len(report["memory"]["banks"]), len(devices))
    megabytes = sum(int(device["Size"].removesuffix(" MB")) for device in devices)
    compare("memory total", report["memory"]["total"]["value"], megabytes)
    for ours, theirs in zip(report["memory"]["banks"], devices):
        compare("bank slot", ours["slot"], int(theirs["Locator"].removeprefix("DIMM ")))
        compare("bank size", peers.text(ours["size"]), theirs["Size"])
        compare("bank type", ours["type"], theirs["Type"])
        detail = theirs["Type Detail"]
        compare("bank detail", ours["typeDetail"], detail,
                explained=[("type-detail-name", ours["typeDetail"].lower() == detail.lower())])
        compare("bank maker", ours["manufacturer"], theirs["Manufacturer"])
        compare("bank speed", peers.text(ours["speed"]), clock(theirs["Speed"]))

    compare("ports", len(report["ports"]), len(of_type(8)))
    for ours, theirs in zip(report["ports"], of_type(8)):
        compare("port designation", ours["designation"], theirs["External Reference Designator"])
        compare("port type", ours["type"], theirs["Port Type"])
    compare("power supplies", len(report["power"]["supplies"]), len(of_type(39)))
    compare("fans", len(report["fans"]), len(of_type(27)))
    compare("voltage probes", report["voltages"]["quantity"], len(of_type(26)))
    compare("temperature probes", report["temperatures"]["quantity"], len(of_type(28)))


def status_text(status):
    texts = []
    for mask, name in STATUS_BITS:
        if name is None:
            texts.append(SPEEDS[(status & mask) >> 9])
        elif status & mask:
            texts.append(name + ";")
    return "".join(texts)


def pci(table, report, functions, spaces):
    compare = lambda *args, **more: table.compare("PCI", "lspci", *args, **more)
    ours_by_address = {function["address"]: function for function in report["pci"]}
    compare("addresses", list(ours_by_address), list(functions))
    for address, theirs in functions.items():
        ours = ours_by_address.get(address, {})
        space = spaces[address]
        bus, rest = address.split(":")
        device, function = rest.split(".")
        compare(f"{address} location", ours.get("location"),
                f"bus:{int(bus, 16)}, dev:{int(device, 16)}, func:{function}")
        names = CLASS_NAMES[theirs["Class"]]
        compare(f"{address} class", ours.get("class"), names[0])
        compare(f"{address} sub-class", ours.get("subClass"), names[1],
                explained=[("usb-interface-newer", theirs["Class"] == "0c03"
                            and theirs.get("ProgIf") == "30" and ours.get("subClass") is None)])
        compare(f"{address} revision", ours.get("revision"), int(theirs.get("Rev", "0"), 16))
        compare(f"{address} interrupt", ours.get("irq") or 0, 0 if space[60] == 0xFF else space[60])
        compare(f"{address} base address", ours.get("baseAddress") or 0,
                int.from_bytes(space[16:20], "little"))
        compare(f"{address} status", ours.get("status") or "",
                status_text(int.from_bytes(space[6:8], "little")))


def drives(table, report, results):
    compare = lambda *args, **more: table.compare("drives", "hdparm", *args, **more)
    names = ["hda", "hdb", "hdc", "hdd"]
    compare("devices", [drive["device"] for drive in report["drives"]],
            [f"/dev/{name}" for name in names])
    positions = ["Primary Master", "Primary Slave", "Secondry Master", "Secondry Slave"]
    for name, position, ours in zip(names, positions, report["drives"]):
        theirs = peers.facts((results / f"drive-{name}.txt").read_text())
        compare(f"{name} position", ours["position"], position)
        compare(f"{name} model", ours["model"], theirs["Model Number"])
        compare(f"{name} serial number", ours["serialNumber"], theirs["Serial Number"])
        serial = ours["serialNumberRead"]
        compare(f"{name} serial number as read", serial, theirs["Serial Number"],
                explained=[("serial-runs-on", len(serial) > 20
                            and serial[:20].strip() == theirs["Serial Number"])])
        compare(f"{name} size", peers.text(ours["size"]),
                (results / f"size-{name}.txt").read_text().strip())


PARTITION_NAMES = {"7": "HPFS/NTFS", "b": "Win95 FAT32", "82": "Linux swap", "83": "Linux"}
LOGICAL_NAMES = {"6": "FAT 16", "b": "Win95 FAT32", "82": "Linux swap", "83": "Linux"}


def partitions(table, report, results):
    compare = lambda *args, **more: table.compare("partitions", "fdisk", *args, **more)
    made = json.loads((results / "partitions.json").read_text())["partitiontable"]["partitions"]
    listed = {entry["device"]: entry for entry in report["partitions"]}
    previous_logical = None
    overwritten = {}
    for partition in made:
        number = int(partition["node"].removeprefix("/dev/hdb"))
        names = LOGICAL_NAMES if number > 4 else PARTITION_NAMES
        known = partition["type"] in names
        if number > 4 and not known:
            overwritten[previous_logical] = str(partition["size"] * 512)
        if number > 4 and known:
            previous_logical = f"/dev/hdb{number}"
    for partition in made:
        device = partition["node"]
        number = int(device.removeprefix("/dev/hdb"))
        names = LOGICAL_NAMES if number > 4 else PARTITION_NAMES
        ours = listed.pop(device, None)
        compare(f"{device} listed", ours is not None, True,
                explained=[("extended-not-listed", partition["type"] == "f"),
                           ("partition-type-not-listed", partition["type"] not in names)])
        if ours is None:
            continue
        size = str(partition["size"] * 512)
        compare(f"{device} type", ours["type"], names.get(partition["type"]))
        compare(f"{device} size", peers.text(ours["size"]), size,
                explained=[("unlisted-size-overwrites",
                            overwritten.get(device) == peers.text(ours["size"]))])
    compare("others", list(listed), [])
