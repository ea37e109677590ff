// SPDX-License-Identifier: MIT
//
// The table of sensor types (IPMI 2.0, table 42-3).

#include "tools/metrics/SensorTypeLabel.h"

#include <cstddef>
#include <iterator>

namespace tool {
namespace {

constexpr const char* kTypeLabels[] = {
    "Reserved",  // 0
    "Temperature",
    "Voltage",
    "Current",
    "Fan",
    "Physical Security",  // 5
    "Platform Security Violation Attempt",
    "Processor",
    "Power Supply",
    "Power Unit",
    "Cooling Device",  // 10
    "Other Units Based Sensor",
    "Memory",
    "Drive Slot",
    "POST Memory Resize",
    "System Firmware Progress",  // 15
    "Event Logging Disabled",
    "Watchdog 1",
    "System Event",
    "Critical Interrupt",
    "Button/Switch",  // 20
    "Module/Board",
    "Microcontroller/Coprocessor",
    "Add In Card",
    "Chassis",
    "Chip Set",  // 25
    "Other Fru",
    "Cable/Interconnect",
    "Terminator",
    "System Boot Initiated",
    "Boot Error",  // 30
    "OS Boot",
    "OS Critical Stop",
    "Slot/Connector",
    "System ACPI Power State",
    "Watchdog 2",  // 35
    "Platform Alert",
    "Entity Presence",
    "Monitor ASIC/IC",
    "LAN",
    "Management Subsystem Health",  // 40
    "Battery",
    "Session Audit",
    "Version Change",
    "FRU State",
};

}  // namespace

const char* SensorTypeLabel(int type) {
    constexpr int kFirstOfMaker = 0xC0;
    if (type >= kFirstOfMaker) return "OEM Reserved";
    if (type < 0 || static_cast<std::size_t>(type) >= std::size(kTypeLabels)) return kTypeLabels[0];
    return kTypeLabels[type];
}

}  // namespace tool
