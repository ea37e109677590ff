#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the configuration of the machine's BMC, for OpenIPMI's ipmi_sim.

Usage: make_bmc.py FOLDER PORT

The BMC has sensors with the factors, units and states that real servers use, an inventory device
with chassis, board and product areas, and a watchdog. The folder gets lan.conf (where the machine
connects), bmc.emu (the controller itself) and an empty folder for what the simulator keeps.
"""

import dataclasses
import pathlib
import sys

VOLTS, RPM, CELSIUS, UNSPECIFIED = 4, 18, 1, 0
TEMPERATURE, VOLTAGE, FAN, PROCESSOR, SUPPLY = 1, 2, 4, 7, 8
CPU_ENTITY, BOARD_ENTITY, SUPPLY_ENTITY, FAN_ENTITY = 3, 7, 10, 29
THRESHOLD_EVENTS, SENSOR_SPECIFIC = 0x01, 0x6F


@dataclasses.dataclass
class Sensor:
    """A full sensor record (IPMI 2.0, 43.1). A reading is (m * raw + b * 10^b_exponent) * 10^exponent."""

    name: str
    number: int
    type: int
    entity: int
    instance: int
    unit: int
    raw: int
    # Lower non-critical, critical, non-recoverable, then the upper three; as raw values.
    thresholds: tuple = ()
    m: int = 1
    b: int = 0
    exponent: int = 0
    b_exponent: int = 0
    accuracy: int = 0  # in 1/200 percent
    signed: bool = False
    percent: bool = False
    states: tuple = ()  # of a discrete sensor: the bits that are set
    readable: int = 0x3F

    @property
    def discrete(self):
        return not self.thresholds

    def record(self):
        lower_nc, lower_c, lower_nr, upper_nc, upper_c, upper_nr = self.thresholds or (0,) * 6
        units = 0xC0 if self.discrete else (0x80 if self.signed else 0) | self.percent
        name = self.name.encode("ascii")
        body = [
            0x20, 0x00, self.number, self.entity, self.instance,
            0x7F,  # initialised and scanned
            0x40 if self.discrete else 0x68,  # thresholds can be read and set
            self.type, SENSOR_SPECIFIC if self.discrete else THRESHOLD_EVENTS,
            0xFF, 0x0F, 0xFF, 0x0F,
            0 if self.discrete else self.readable, 0 if self.discrete else 0x3F,
            units, self.unit, 0,
            0,  # linear
            self.m & 0xFF, (self.m >> 2) & 0xC0,
            self.b & 0xFF, (self.b >> 2) & 0xC0 | self.accuracy,
            0, (self.exponent & 0x0F) << 4 | self.b_exponent & 0x0F,
            0, 0, 0, 0,  # no nominal values
            0x7F if self.signed else 0xFF, 0x80 if self.signed else 0x00,
            upper_nr, upper_c, upper_nc, lower_nr, lower_c, lower_nc,
            2, 2, 0, 0, 0, 0xC0 | len(name),
        ]
        return bytes([0, 0, 0x51, 0x01, len(body) + len(name), *body]) + name

    def commands(self):
        where = f"0x20 0 {self.number}"
        event_code = SENSOR_SPECIFIC if self.discrete else THRESHOLD_EVENTS
        yield f"sensor_add {where} {self.type} {event_code}"
        if self.discrete:
            for bit in self.states:
                yield f"sensor_set_bit {where} {bit} 1 0"
        else:
            values = " ".join(str(value) for value in reversed(self.thresholds))
            yield f"sensor_set_threshold {where} settable 111111 {values}"
            yield f"sensor_set_value {where} {self.raw} 0"
        masks = " ".join(["000111111111111"] * 4)
        yield f"sensor_set_event_support {where} enable scanning per-state {masks}"
        yield f"main_sdr_add 0x20 {hexadecimal(self.record())}"


# Offsets below zero come with accuracy bits and, once, without: the library reads the two unlike.
# The first nine are numbered as they stand in the repository, the others are not: the library reads
# thresholds by place.
SENSORS = [
    Sensor("CPU 1 Temp", 0, TEMPERATURE, CPU_ENTITY, 1, CELSIUS, 45, (5, 2, 1, 75, 85, 95)),
    Sensor("CPU 2 Temp", 1, TEMPERATURE, CPU_ENTITY, 2, CELSIUS, 31, (5, 2, 1, 75, 85, 95)),
    Sensor("Ambient", 2, TEMPERATURE, BOARD_ENTITY, 1, CELSIUS, 149, (131, 128, 123, 166, 173, 178),
           b=-128, accuracy=2),
    Sensor("Exhaust", 3, TEMPERATURE, BOARD_ENTITY, 2, CELSIUS, 96, (20, 12, 6, 130, 150, 170),
           m=4, b=-20, exponent=-1, accuracy=2),
    Sensor("+12V", 4, VOLTAGE, BOARD_ENTITY, 1, VOLTS, 192, (178, 172, 166, 202, 208, 214), m=63,
           exponent=-3),
    Sensor("+5V", 5, VOLTAGE, BOARD_ENTITY, 1, VOLTS, 193, (183, 180, 175, 202, 205, 210), m=26,
           exponent=-3),
    Sensor("-12V", 6, VOLTAGE, BOARD_ENTITY, 1, VOLTS, 97, (76, 70, 64, 112, 118, 124), m=14, b=-257,
           exponent=-2, b_exponent=1),
    Sensor("VCore", 7, VOLTAGE, CPU_ENTITY, 1, VOLTS, 118, (105, 100, 95, 135, 140, 145),
           exponent=-2),
    Sensor("VBAT", 8, VOLTAGE, BOARD_ENTITY, 1, VOLTS, 157, (145, 135, 125, 175, 180, 190), m=2,
           exponent=-2),
    Sensor("Fan 1", 20, FAN, FAN_ENTITY, 1, RPM, 70, (25, 20, 15, 200, 220, 240), m=60),
    Sensor("Fan 2", 21, FAN, FAN_ENTITY, 2, RPM, 72, (25, 20, 15, 200, 220, 240), m=60),
    Sensor("Fan 3", 22, FAN, FAN_ENTITY, 3, RPM, 0, (25, 20, 15, 200, 220, 240), m=60),
    Sensor("Fan 4", 23, FAN, FAN_ENTITY, 4, RPM, 131, (15, 10, 6, 180, 200, 220), m=7, b=40,
           b_exponent=1),
    # Processor presence (bit 7): socket 2 is empty.
    Sensor("CPU 1", 30, PROCESSOR, CPU_ENTITY, 1, UNSPECIFIED, 0, states=(7,)),
    Sensor("CPU 2", 31, PROCESSOR, CPU_ENTITY, 2, UNSPECIFIED, 0),
    Sensor("PSU 1", 40, SUPPLY, SUPPLY_ENTITY, 1, UNSPECIFIED, 0, states=(0,)),
]


def hexadecimal(data):
    return " ".join(f"0x{byte:02x}" for byte in data)


def field(text):
    """A text of eight-bit characters after its type and length (Platform Management FRU, 13)."""
    data = text.encode("ascii")
    return bytes([0xC0 | len(data)]) + data


def area(head, fields):
    """An information area: its head without the length, the fields, padding and checksum."""
    body = bytes([1, 0, *head]) + b"".join(map(field, fields)) + b"\xc1"
    body += bytes(-(len(body) + 1) % 8)
    body = body[:1] + bytes([(len(body) + 1) // 8]) + body[2:]
    return body + bytes([-sum(body) & 0xFF])


def inventory():
    chassis = area([0x17], ["CH-1100-R", "CHS0042177"])
    board = area([0, 0x10, 0x20, 0x30],
                 ["Vessel & Marrow Computers", "KB-31 Mainboard", "KB31B0071", "PN-3100-04", ""])
    product = area([0], ["Vessel & Marrow Computers", "Ketch 3100", "K3100-A", "Rev 2", "SN31000815",
                         "AT-77", ""])
    offsets, at = [], 1
    for part in (chassis, board, product):
        offsets.append(at)
        at += len(part) // 8
    header = bytes([1, 0, *offsets, 0, 0])
    header += bytes([-sum(header) & 0xFF])
    image = header + chassis + board + product
    return image + bytes(256 - len(image))


def controller():
    yield "mc_setbmc 0x20"
    # Device ID 0x2a, revision 3, firmware 2.41 (BCD), manufacturer and product of this machine.
    yield "mc_add 0x20 0x2a no-device-sdrs 0x03 0x02 0x41 0x9f 0x007a31 0x3100"
    yield "sel_enable 0x20 100 0x0a"
    image = inventory()
    yield f"mc_add_fru_data 0x20 0 {len(image)} data {hexadecimal(image)}"
    for sensor in SENSORS:
        yield from sensor.commands()
    yield "mc_enable 0x20"


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1])
    (folder / "state").mkdir(parents=True)
    (folder / "lan.conf").write_text(
        f'name "machine"\nserial 15 127.0.0.1 {int(sys.argv[2])} codec VM\n')
    (folder / "bmc.emu").write_text("".join(line + "\n" for line in controller()))


if __name__ == "__main__":
    main()
