# SPDX-License-Identifier: MIT
"""The BMC beside ipmitool: sensors, thresholds, watchdog, inventory."""

import json
import re

import peers

UNITS = {"degrees C": "degree C", "Volts": "V", "RPM": "RPM"}
LIMIT_STATES = {"ok": "ok", "nc": "non-critical", "cr": "critical", "nr": "non-recoverable"}

# The one sensor with a negative offset whose accuracy bits are clear. The library takes the two
# halves of such an offset apart and so reads -513 for -257.
HALVED_OFFSET = "-12V"
HALVED_OFFSET_ERROR = -256 * 0.1

# What a raw 0 is converted to by the fans whose offset is not 0.
RAW_ZERO = {"Fan 4": 400.0}


def reading_text(sensor, value):
    if sensor["unit"] == "RPM":
        return f"{int(value)}{UNITS['RPM']}"
    return f"{value + 1e-9:.2f}{UNITS[sensor['unit']]}"


def sensors(table, area, report, theirs):
    compare = lambda *args, **more: table.compare(area, "ipmitool", *args, **more)
    ours_by_name, first_of_table = {}, {}
    for group, code in (("temperatures", 1), ("voltages", 2), ("fans", 4)):
        ours = report["librarySensors"][group]
        compare(f"number of {group}", ours["quantity"],
                sum(sensor["type"] == code for sensor in theirs))
        for sensor in ours["sensors"]:
            ours_by_name[sensor["name"]] = sensor
            if group != "fans":
                first_of_table[sensor["name"]] = ours["sensors"][0]["thresholds"]
    compare("names", list(ours_by_name), [sensor["name"] for sensor in theirs])
    for sensor in theirs:
        name = sensor["name"]
        ours = ours_by_name[name]
        halved = name == HALVED_OFFSET
        compare(f"{name} number", ours["number"], sensor["number"])
        for field in ("entity", "type"):
            compare(f"{name} {field}", ours[field]["code"], sensor[field])
        shifted = reading_text(sensor, sensor["reading"] + HALVED_OFFSET_ERROR)
        reading = peers.text(ours["reading"])
        compare(f"{name} reading", reading, reading_text(sensor, sensor["reading"]),
                explained=[("absent-processor", name == "CPU 2 Temp" and reading == "Unknown"),
                           ("offset-in-halves", halved and reading == shifted)])
        state = (ours["limit"] or "").removeprefix("lower ").removeprefix("upper ")
        compare(f"{name} state", state, LIMIT_STATES[sensor["limit"]],
                explained=[("absent-processor", name == "CPU 2 Temp" and state == "")])
        for limit, value in sensor["thresholds"].items():
            mine = round(ours["thresholds"][limit], 3)
            compare(f"{name} {limit}", mine, value,
                    explained=[("offset-in-halves",
                                halved and abs(mine - value - HALVED_OFFSET_ERROR) < 0.001)])
            # What GetIpmiInfo says of them, which is the threshold list's for fans.
            mine = ours["recordThresholds"][limit]
            first = first_of_table.get(name)
            compare(f"{name} {limit} in the record", round(mine, 3), value,
                    explained=[("thresholds-of-the-first", first and mine == first[limit]),
                               ("thresholds-by-place",
                                not first and mine == RAW_ZERO.get(name, 0.0))])


def thresholds(table, area, report, records, theirs):
    """The library's own list, which it reads by place in the repository."""
    compare = lambda *args, **more: table.compare(area, "ipmitool", *args, **more)
    compare("records", len(report["thresholds"]), len(records))
    compare("records that the BMC counts", report["sensors"]["records"], len(records))
    values = {sensor["name"]: sensor["thresholds"] for sensor in theirs}
    for place, record in enumerate(records):
        name = record["name"]
        ours = report["thresholds"][place]
        for field in ("entity", "type"):
            compare(f"{name} {field}", ours[field]["code"], record[field])
        # No sensor has the number of this place, so what is converted is a raw 0.
        elsewhere = record["number"] != place
        for limit in peers.LIMITS:
            mine = round(ours["thresholds"][limit], 3)
            value = 0.0 if record["discrete"] else values[name][limit]
            compare(f"{name} {limit}", mine, value,
                    explained=[("thresholds-by-place",
                                elsewhere and mine == RAW_ZERO.get(name, 0.0)),
                               ("offset-in-halves", name == HALVED_OFFSET
                                and abs(mine - value - HALVED_OFFSET_ERROR) < 0.001)])


def set_threshold(table, before, after):
    compare = lambda *args, **more: table.compare("threshold set", "ipmitool", *args, **more)
    for name in ("Lower Non-Recoverable", "Lower Critical", "Lower Non-Critical",
                 "Upper Non-Critical", "Upper Non-Recoverable"):
        compare(name, peers.facts(after)[name], peers.facts(before)[name])
    compare("Upper Critical before", peers.facts(before)["Upper Critical"], "1.400")
    compare("Upper Critical", peers.facts(after)["Upper Critical"], "1.420")


ACTIONS = {"none": "No action (0x00)", "power-cycle": "Power Cycle (0x03)"}


def watchdog(table, results):
    """The simulated BMC says neither whether the watchdog runs nor how much of its time is left."""
    compare = lambda *args, **more: table.compare("watchdog", "ipmitool", *args, **more)
    for step, action, milliseconds in (("set", "power-cycle", 90000), ("reset", "power-cycle", 90000),
                                       ("stop", "none", 180000)):
        ours = json.loads((results / f"watchdog-{step}.json").read_text())["watchdog"]
        theirs = peers.facts((results / f"watchdog-{step}.txt").read_text())
        compare(f"{step}: action asked", ours["action"], action)
        compare(f"{step}: action", ACTIONS[ours["action"]], theirs["Watchdog Timer Action"])
        compare(f"{step}: time-out asked", ours["timeout"]["value"] * 1000, milliseconds)
        compare(f"{step}: time-out", f"{ours['timeout']['value']:.1f} sec",
                theirs["Initial Countdown"])
        compare(f"{step}: use", "SMS/OS (0x04)", theirs["Watchdog Timer Use"])


def watchdog_at_work(table, console):
    """What the watchdog does to the machine when it runs out; a machine that is reset falls silent."""
    compare = lambda *args: table.compare("watchdog at work", "the machine", *args)
    said = re.findall(r"^watchdog: (.*?)\r?$", console, re.M)
    for place, words in enumerate(("started and stopped", "starting")):
        compare(words, said[place:place + 1], [words])
    compare("reset when the time is out", said[2:], [])
    compare("not powered off by itself", "Power Off" in console, False)


def inventory(table, area, report, fru, controller):
    compare = lambda *args, **more: table.compare(area, "ipmitool", *args, **more)
    theirs = peers.facts(fru)
    ours = report["bmc"]
    compare("firmware", ours["firmware"], peers.facts(controller)["Firmware Revision"])
    for part, field, name in (
            ("board", "manufacturer", "Board Mfg"), ("board", "product", "Board Product"),
            ("board", "serialNumber", "Board Serial"), ("board", "partNumber", "Board Part Number"),
            ("chassis", "partNumber", "Chassis Part Number"),
            ("chassis", "serialNumber", "Chassis Serial"),
            ("product", "manufacturer", "Product Manufacturer"),
            ("product", "name", "Product Name"), ("product", "partNumber", "Product Part Number"),
            ("product", "version", "Product Version")):
        compare(name, ours[part][field], theirs[name])
    start = ours["product"]["serialNumberStart"] or ""
    compare("Product Serial", start, theirs["Product Serial"],
            explained=[("product-serial-cut", len(start) == len(theirs["Product Serial"]) - 1
                        and theirs["Product Serial"].startswith(start))])
