# SPDX-License-Identifier: MIT
"""The tool's other commands, as an administrator gives them, beside what the peers say."""

import json
import math
import os
import pathlib
import re
import shutil
import subprocess

import formats
import peers

SCHEMA = pathlib.Path(__file__).parents[2] / "tools/schema/talvane-1.schema.json"

STATES = {"ok": "within limits",
          "lnr": "lower non-recoverable", "lcr": "lower critical", "lnc": "lower non-critical",
          "unc": "upper non-critical", "ucr": "upper critical", "unr": "upper non-recoverable"}
NO_STATE = "no state asserted"
VERDICTS = {"ok": "OK", "nc": "WARNING", "cr": "CRITICAL", "nr": "CRITICAL"}
STATUS = {"OK": 0, "WARNING": 1, "CRITICAL": 2}
UNITS = {"degrees C": "degree C", "Volts": "V", "RPM": "RPM"}
# By unit: the metric of readings, that of states, and that of thresholds.
METRICS = {
    "degrees C": ("ipmi_temperature_celsius", "ipmi_temperature_state",
                  "talvane_temperature_threshold_celsius"),
    "Volts": ("ipmi_voltage_volts", "ipmi_voltage_state", "talvane_voltage_threshold_volts"),
    "RPM": ("ipmi_fan_speed_rpm", "ipmi_fan_speed_state", "talvane_fan_speed_threshold_rpm"),
}


class Peer:
    """A sensor as ipmitool shows it. One without a reading has states, none of which is a fault in this
    machine."""

    def __init__(self, line, readings):
        cells = [cell.strip() for cell in line.split("|")]
        self.name, self.number, self.entity = cells[0], int(cells[1].rstrip("h"), 16), cells[3]
        self.reading = readings.get(self.name)  # None for a sensor with states alone
        self.verdict = VERDICTS[self.reading["limit"]] if self.reading else "OK"
        self.state = STATES[cells[2]] if self.reading else cells[4].lower() or NO_STATE


def number(text):
    """A number without the digits that only say how exact it is."""
    return f"{float(text):g}"


def limit_words(name):
    return re.sub(r"(?=[A-Z])", " ", name).lower().replace("non ", "non-")


def sensors(compare, theirs, answer, text):
    rows = {}
    for line in text.splitlines():
        cells = re.split(r" {2,}", line.strip())
        if cells[0].startswith("0x"):
            rows.setdefault(int(cells[0], 16), cells)
    compare("records", answer["records"], len(theirs))
    compare("complete", answer["complete"], True)
    compare("names", [sensor["name"] for sensor in answer["sensors"]],
            [sensor.name for sensor in theirs])
    for ours, sensor in zip(answer["sensors"], theirs):
        name = sensor.name
        value = ours["reading"]
        compare(f"{name} number", ours["number"], sensor.number)
        compare(f"{name} entity", f"{ours['entity']['code']}.{ours['entity']['instance']}",
                sensor.entity)
        states = ours["states"] or [NO_STATE]
        compare(f"{name} state", sensor.state if sensor.state in states else states, sensor.state)
        row = rows.get(sensor.number, [])
        compare(f"{name} in the table", [row[1:2], row[-1:]], [[name], [", ".join(states)]])
        if not sensor.reading:
            compare(f"{name} has no reading", value, None)
            continue
        compare(f"{name} reading", round(value["value"], 3), sensor.reading["reading"])
        compare(f"{name} unit", value["unit"], UNITS[sensor.reading["unit"]])
        compare(f"{name} reading in the table", row[4:5], [f"{value['value']:g} {value['unit']}"])
        for limit, threshold in sensor.reading["thresholds"].items():
            compare(f"{name} {limit}", round(ours["thresholds"][limit]["value"], 3), threshold)


def health(compare, theirs, folder):
    read = lambda name: (folder / name).read_text()
    answer = json.loads(read("health.json"))["health"]
    worst = max((sensor.verdict for sensor in theirs), key=STATUS.get)
    verdicts = {sensor["name"]: sensor["verdict"] for sensor in answer["sensors"]}
    compare("verdict", answer["verdict"], worst)
    compare("verdict in words", read("health.txt").splitlines()[0], f"Health: {worst}")
    compare("verdict of the plugin", read("nagios.txt").split(" - ")[0], f"SENSORS {worst}")
    compare("status", answer["status"], STATUS[worst])
    for name in ("health", "nagios"):
        compare(f"exit status of {name}", read(f"{name}.status").strip(), str(STATUS[worst]))
    performance = dict(re.findall(r"'([^']+)'=(\S+)", read("nagios.txt")))
    for sensor in theirs:
        compare(f"{sensor.name} verdict", verdicts.get(sensor.name), sensor.verdict)
        if sensor.reading:
            limits = {limit: number(value) for limit, value in sensor.reading["thresholds"].items()}
            compare(f"{sensor.name} performance data", performance.get(sensor.name),
                    f"{number(sensor.reading['reading'])};"
                    f"{limits['lowerNonCritical']}:{limits['upperNonCritical']};"
                    f"{limits['lowerCritical']}:{limits['upperCritical']};;")


def metrics(compare, theirs, page):
    values, problems = formats.metrics(page)
    compare("faults of the page", problems, [])
    value = lambda name, labels: values.get((name, tuple(sorted(labels.items()))), math.nan)
    for collector in ("ipmi", "bmc"):
        compare(f"collector {collector}", value("ipmi_up", {"collector": collector}), 1)
    worst = max(STATUS[sensor.verdict] for sensor in theirs)
    compare("verdict", value("talvane_health_verdict", {}), worst)
    for sensor in theirs:
        labels = {"id": f"0x{sensor.number:02X}", "name": sensor.name}
        compare(f"{sensor.name} verdict", value("talvane_sensor_verdict", labels),
                STATUS[sensor.verdict])
        if not sensor.reading:
            continue
        reading, state, threshold = METRICS[sensor.reading["unit"]]
        compare(f"{sensor.name} reading", round(value(reading, labels), 3),
                sensor.reading["reading"])
        compare(f"{sensor.name} state", value(state, labels), STATUS[sensor.verdict])
        for limit, held in sensor.reading["thresholds"].items():
            compare(f"{sensor.name} {limit}",
                    round(value(threshold, labels | {"threshold": limit_words(limit)}), 3), held)
    promtool = shutil.which("promtool")
    if promtool:
        done = subprocess.run([promtool, "check", "metrics"], input=page, capture_output=True,
                              text=True, check=False)
        compare("promtool", (done.returncode, done.stdout + done.stderr), (0, ""))


def page(compare, theirs, text, report):
    checked = formats.Page(text)
    compare("faults of the page", checked.problems, [])
    worst = max((sensor.verdict for sensor in theirs), key=STATUS.get)
    texts = checked.texts
    system = report["system"]
    for name, wanted in (("heading", f"{system['manufacturer']} {system['product']}"),
                         ("verdict", f"Health: {worst}"),
                         ("serial number", report["board"]["serialNumber"])):
        compare(name, wanted in texts, True)
    for sensor in theirs:
        compare(f"{sensor.name} is there", sensor.name in texts, True)
        if sensor.reading:
            wanted = f"{number(sensor.reading['reading'])} {UNITS[sensor.reading['unit']]}"
            compare(f"{sensor.name} reading", wanted in texts, True)
    compare("PCI functions", sum(function["address"] in texts for function in report["pci"]),
            len(report["pci"]))
    for drive in report["drives"]:
        compare(f"{drive['device']} serial number", drive["serialNumber"] in texts, True)


def pci_names(compare, report, names, table):
    """lspci writes a number where pci.ids has no name."""
    named = lambda text: None if re.fullmatch(r"(Vendor|Device) [0-9a-f]{4}", text) else text
    for function in report["pci"]:
        address, theirs = function["address"], names[function["address"]]
        vendor, device = named(theirs["Vendor"]), named(theirs["Device"])
        compare(f"{address} vendor", function["vendor"]["name"], vendor)
        compare(f"{address} device", function["device"]["name"], device)
        if vendor or device:
            row = rf"^ +{address} +{re.escape(vendor or '-')} +{re.escape(device or '-')}$"
            compare(f"{address} in the table", bool(re.search(row, table, re.M)), True)


def single_values(compare, folder, board, watched, answer):
    read = lambda name: (folder / name).read_text()
    compare("get board.serial-number", read("serial-number.txt"), board["Serial Number"] + "\n")
    reading = {sensor["name"]: sensor["reading"]["text"] for sensor in answer["sensors"]
               if sensor["reading"]}
    compare("get of fan-1", read("fan.txt"), reading["Fan 1"] + "\n")
    compare("rounds of --watch", len(watched), 2)
    compare("lines of --watch", read("watch.json").count("\n"), 2)
    compare("times of --watch", watched[0]["time"] < watched[1]["time"], True)
    for count, output in enumerate(watched, 1):
        compare(f"round {count} of --watch", output["sensors"], answer)


def doctor(compare, text, status, answer):
    """What the doctor says in words, beside its own JSON."""
    headings = re.findall(r"^([a-z0-9-]+)\n-+$", text, re.M)
    failed = [check["name"] for check in answer["checks"] if not check["passed"]]
    compare("findings", headings, failed)
    compare("summary", text.splitlines()[-1].strip(),
            f"{len(answer['checks']) - len(failed)} of {len(answer['checks'])} checks passed; "
            "nothing stops talvane")
    compare("status", status.strip(), "0")


def schema(table, results):
    """Every output in JSON of the tool, in all machines."""
    checker = formats.Schema(SCHEMA)
    for path in sorted(results.rglob("*.json")):
        for output in formats.outputs(path.read_text()):
            if "blockdevices" not in output and "partitiontable" not in output:
                table.compare("JSON", "schema", os.path.relpath(path, results),
                              checker.problems(output), [])


def compare(table, results):
    folder = results / "commands"
    read = lambda name: (folder / name).read_text()
    area = lambda name, peer: lambda *args: table.compare(name, peer, *args)
    report = json.loads((results / "host.json").read_text())
    structures = peers.dmidecode((results / "dmidecode.txt").read_text())
    board = next(fields for kind, fields in structures if kind == 2)
    records = peers.ipmitool_records((results / "sensors-verbose.txt").read_text())
    readings = {sensor["name"]: sensor for sensor in
                peers.ipmitool_sensors((results / "sensors.txt").read_text(), records)}
    theirs = [Peer(line, readings) for line in read("entities.txt").splitlines()]
    answer = json.loads(read("sensors.json"))["sensors"]
    sensors(area("talvane sensors", "ipmitool"), theirs, answer, read("sensors.txt"))
    health(area("talvane health", "ipmitool"), theirs, folder)
    metrics(area("talvane metrics", "ipmitool"), theirs, read("metrics.txt"))
    page(area("report --html", "ipmitool"), theirs, read("page.html"), report)
    pci_names(area("PCI names", "lspci"), report, peers.lspci(read("pci-names.txt")),
              read("pci.txt"))
    single_values(area("get, --watch", "dmidecode"), folder, board,
                  formats.outputs(read("watch.json")), answer)
    doctor(area("doctor in words", "its JSON"), read("doctor.txt"), read("doctor.status"),
           json.loads((results / "doctor.json").read_text())["doctor"])
