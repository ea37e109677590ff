# SPDX-License-Identifier: MIT
"""What the peers printed, as plain values."""

import json
import re


def facts(text, separator=":"):
    """Lines of `name: value`."""
    pairs = (line.split(separator, 1) for line in text.splitlines() if separator in line)
    return {name.strip(): value.strip() for name, value in pairs}


def dmidecode(text):
    """The structures, as (type, fields) in the order of the table."""
    structures = []
    for block in text.split("\n\n"):
        found = re.match(r"Handle 0x[0-9A-F]+, DMI type (\d+), \d+ bytes\n", block)
        if found:
            structures.append((int(found.group(1)), facts(block[found.end():])))
    return structures


def lspci(text):
    """`lspci -D -vmmn`: the functions by address, without the domain."""
    functions = {}
    for block in text.strip().split("\n\n"):
        function = facts(block)
        functions[function["Slot"].removeprefix("0000:")] = function
    return functions


def lspci_bytes(text):
    """`lspci -D -xxx`: the configuration space by address."""
    spaces = {}
    for block in text.strip().split("\n\n"):
        head, *lines = block.splitlines()
        space = bytes.fromhex(" ".join(line.split(": ", 1)[1] for line in lines))
        spaces[head.split()[0].removeprefix("0000:")] = space
    return spaces


def lsblk(text):
    """`lsblk --json`: the disks by name, each with the sizes of its partitions by number."""
    disks = {}
    for disk in json.loads(text)["blockdevices"]:
        parts = {int(re.search(r"\d+$", part["name"]).group()): str(part["size"])
                 for part in disk.get("children", [])}
        disks[disk["name"]] = {"model": (disk["model"] or "").strip(),
                               "serial": (disk["serial"] or "").strip(),
                               "size": str(disk["size"]), "partitions": parts}
    return disks


LIMITS = ("lowerNonRecoverable", "lowerCritical", "lowerNonCritical", "upperNonCritical",
          "upperCritical", "upperNonRecoverable")


def ipmitool_records(verbose):
    """`ipmitool -v sdr list full`: the records of the repository, in order."""
    records = []
    for block in verbose.strip().split("\n\n"):
        found = re.match(r"Sensor ID\s+: (.*) \(0x([0-9a-f]+)\)\n\s*Entity ID\s+: (\d+)\.\d+.*\n"
                         r"\s*Sensor Type \((\w+)\)\s*: .* \(0x([0-9a-f]+)\)", block)
        if found:
            name, number, entity, kind, sensor_type = found.groups()
            records.append({"name": name, "number": int(number, 16), "entity": int(entity),
                            "discrete": kind == "Discrete", "type": int(sensor_type, 16)})
    return records


def text(quantity):
    """The library's text of a quantity in the tool's JSON; empty for none."""
    return quantity["text"] if quantity else ""


def ipmitool_sensors(brief, records):
    """`ipmitool sensor`: the sensors with a reading, in order, each with its record."""
    records = {record["name"]: record for record in records}
    sensors = []
    for line in brief.splitlines():
        cells = [cell.strip() for cell in line.split("|")]
        if len(cells) == 10 and cells[2] != "discrete":
            sensors.append({**records[cells[0]], "reading": float(cells[1]), "unit": cells[2],
                            "limit": cells[3],
                            "thresholds": dict(zip(LIMITS, map(float, cells[4:])))})
    return sensors


def top(text):
    """`top -b -1 -n 2`: the busy share of each processor in the second round."""
    rounds = text.split("top - ")
    shares = {}
    for number, idle in re.findall(r"%Cpu(\d+)\s*:.*?([\d.]+) id", rounds[-1]):
        shares[int(number)] = 100 - float(idle)
    return [shares[number] for number in sorted(shares)]


def memory_percent(text):
    """`free`: what the used memory is of all."""
    total, used = map(int, re.search(r"^Mem:\s+(\d+)\s+(\d+)", text, re.M).groups())
    return 100 * used // total
