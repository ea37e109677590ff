# SPDX-License-Identifier: MIT
"""SMBIOS beside dmidecode, PCI beside lspci, drives and partitions beside hdparm and sfdisk."""

import re

import peers

# What the library calls the device classes of these machines: class and sub-class name by code.
CLASS_NAMES = {
    "0100": ("Mass storage controller", "SCSI bus controller"),
    "0101": ("Mass storage controller", "IDE controller"),
    "0106": ("Mass storage controller", "SATA controller"),
    "0108": ("Mass storage controller", "Non-Volatile memory controller"),
    "0200": ("Network controller", "Ethernet controller"),
    "0300": ("Display controller", "VGA-compatible controller"),
    "0600": ("Bridge device", "Host bridge"),
    "0601": ("Bridge device", "ISA bridge"),
    "0604": ("Bridge device", "PCI-to-PCI bridge"),
    "0680": ("Bridge device", "Other bridge device"),
    "0700": ("Simple communication controllers", "16550-compatible serial controller"),
    "0c03": ("Serial bus controllers", "Universal Serial Bus"),
    "0c05": ("Serial bus controllers", "SMBus"),
}
# Sub-classes of mass storage that are newer than the library's list.
NEWER_STORAGE = ("0106", "0108")
LAST_BUS = 10  # the library looks no further
STATUS_BITS = [
    (0x0008, "Interrupt Status"), (0x0010, "Capabilities List"), (0x0020, "66 MHz Capable"),
    (0x0080, "Fast Back-to-Back Capable"), (0x0100, "Master Data Parity Error"),
    (0x0600, None),
    (0x0800, "Signaled Target Abort"), (0x1000, "Received Target Abort"),
    (0x2000, "Received Master Abort"), (0x4000, "Signaled system Error"),
    (0x8000, "Detected Parity Error"),
]
POSITIONS = ["Primary Master", "Primary Slave", "Secondry Master", "Secondry Slave"]
SPEEDS = {0: "Speed=Fast;", 1: "Speed=Medium;", 2: "Speed=Slow;", 3: ""}


def smbios(table, area, report, text):
    structures = peers.dmidecode(text)
    of_type = lambda wanted: [fields for kind, fields in structures if kind == wanted]
    compare = lambda *args, **more: table.compare(area, "dmidecode", *args, **more)

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


def pci(table, area, report, functions, spaces):
    compare = lambda *args, **more: table.compare(area, "lspci", *args, **more)
    ours_by_address = {function["address"]: function for function in report["pci"]}
    compare("addresses", list(ours_by_address),
            [address for address in functions if address in ours_by_address])
    for address, theirs in functions.items():
        bus, rest = address.split(":")
        ours = ours_by_address.get(address)
        compare(f"{address} listed", ours is not None, True,
                explained=[("bus-beyond-10", int(bus, 16) > LAST_BUS)])
        if ours is None:
            continue
        space = spaces[address]
        device, function = rest.split(".")
        compare(f"{address} location", ours["location"],
                f"bus:{int(bus, 16)}, dev:{int(device, 16)}, func:{function}")
        compare(f"{address} vendor", f"{ours['vendor']['code']:04x}", theirs["Vendor"])
        compare(f"{address} device", f"{ours['device']['code']:04x}", theirs["Device"])
        names = CLASS_NAMES[theirs["Class"]]
        compare(f"{address} class", ours["class"], names[0])
        compare(f"{address} sub-class", ours["subClass"], names[1],
                explained=[("usb-interface-newer", theirs["Class"] == "0c03"
                            and theirs.get("ProgIf") == "30" and ours["subClass"] is None),
                           ("storage-newer", theirs["Class"] in NEWER_STORAGE
                            and ours["subClass"] is None)])
        compare(f"{address} revision", ours["revision"], int(theirs.get("Rev", "0"), 16))
        compare(f"{address} interrupt", ours["irq"] or 0, 0 if space[60] == 0xFF else space[60])
        compare(f"{address} base address", ours["baseAddress"] or 0,
                int.from_bytes(space[16:20], "little"))
        compare(f"{address} status", ours["status"] or "",
                status_text(int.from_bytes(space[6:8], "little")))


def drives(table, report, results):
    compare = lambda *args, **more: table.compare("drives", "hdparm", *args, **more)
    names = ["hda", "hdb", "hdc", "hdd"]
    compare("devices", [drive["device"] for drive in report["drives"]],
            [f"/dev/{name}" for name in names])
    for name, position, ours in zip(names, POSITIONS, report["drives"]):
        compare(f"{name} position", ours["position"], position)
        size = (results / f"size-{name}.txt").read_text().strip()
        drive(compare, name, ours, (results / f"drive-{name}.txt").read_text(), size)


def drive(compare, name, ours, identity, size):
    """A drive beside what `hdparm -I` says of it."""
    theirs = peers.facts(identity)
    compare(f"{name} model", ours["model"], theirs["Model Number"])
    compare(f"{name} serial number", ours["serialNumber"], theirs["Serial Number"])
    serial = ours["serialNumberRead"]
    compare(f"{name} serial number as read", serial, theirs["Serial Number"],
            explained=[("serial-runs-on", len(serial) > 20
                        and serial[:20].strip() == theirs["Serial Number"])])
    compare(f"{name} size", peers.text(ours["size"]), size)


PARTITION_NAMES = {"7": "HPFS/NTFS", "b": "Win95 FAT32", "82": "Linux swap", "83": "Linux"}
LOGICAL_NAMES = {"6": "FAT 16", "b": "Win95 FAT32", "82": "Linux swap", "83": "Linux"}


def partitions(table, area, listed, made, device):
    """The partitions that are listed, by their devices, beside those that fdisk made of `device`.
    What is compared is taken out of `listed`."""
    compare = lambda *args, **more: table.compare(area, "fdisk", *args, **more)
    number_of = lambda partition: int(re.search(r"\d+$", partition["node"]).group())
    is_gpt = made["label"] == "gpt"
    previous_logical = None
    overwritten = {}
    for partition in made["partitions"]:
        number = number_of(partition)
        known = partition["type"] in LOGICAL_NAMES
        if number > 4 and not known:
            overwritten[previous_logical] = str(partition["size"] * 512)
        if number > 4 and known:
            previous_logical = number
    for partition in made["partitions"]:
        number = number_of(partition)
        names = LOGICAL_NAMES if number > 4 else PARTITION_NAMES
        ours = listed.pop(f"{device}{number}", None)
        compare(f"{device}{number} listed", ours is not None, True,
                explained=[("gpt-not-listed", is_gpt),
                           ("extended-not-listed", partition["type"] == "f"),
                           ("partition-type-not-listed", partition["type"] not in names)])
        if ours is None:
            continue
        size = str(partition["size"] * 512)
        compare(f"{device}{number} type", ours["type"], names.get(partition["type"]))
        compare(f"{device}{number} size", peers.text(ours["size"]), size,
                explained=[("unlisted-size-overwrites",
                            overwritten.get(number) == peers.text(ours["size"]))])
