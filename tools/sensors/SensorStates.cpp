// SPDX-License-Identifier: MIT
//
// Generic states (IPMI 2.0, table 42-2), the names of sensor types, and what says that an entity is
// there.

#include "tools/sensors/SensorStates.h"

#include <algorithm>
#include <iterator>

#include "tools/base/Text.h"

namespace tool {
namespace {

using enum Verdict;

// What an asserted state means depends on the sensor's maker: it is worth a look, no more.
constexpr StateMeaning kGenericStates[] = {
    {0x02, 0, kOk, "idle"},
    {0x02, 1, kOk, "active"},
    {0x02, 2, kOk, "busy"},
    {0x03, 0, kOk, "state deasserted"},
    {0x03, 1, kWarning, "state asserted"},
    {0x04, 0, kOk, "predictive failure deasserted"},
    {0x04, 1, kWarning, "predictive failure asserted"},
    {0x05, 0, kOk, "limit not exceeded"},
    {0x05, 1, kCritical, "limit exceeded"},
    {0x06, 0, kOk, "performance met"},
    {0x06, 1, kWarning, "performance lags"},
    {0x07, 0, kOk, "transition to OK"},
    {0x07, 1, kWarning, "non-critical from OK"},
    {0x07, 2, kCritical, "critical from less severe"},
    {0x07, 3, kCritical, "non-recoverable from less severe"},
    {0x07, 4, kWarning, "non-critical from more severe"},
    {0x07, 5, kCritical, "critical from non-recoverable"},
    {0x07, 6, kCritical, "non-recoverable"},
    {0x07, 7, kOk, "monitored"},
    {0x07, 8, kOk, "informational"},
    {0x08, 0, kOk, "device absent"},
    {0x08, 1, kOk, "device present"},
    {0x09, 0, kWarning, "device disabled"},
    {0x09, 1, kOk, "device enabled"},
    {0x0A, 0, kOk, "running"},
    {0x0A, 1, kOk, "in test"},
    {0x0A, 2, kOk, "power off"},
    {0x0A, 3, kOk, "on line"},
    {0x0A, 4, kWarning, "off line"},
    {0x0A, 5, kWarning, "off duty"},
    {0x0A, 6, kWarning, "degraded"},
    {0x0A, 7, kOk, "power save"},
    {0x0A, 8, kCritical, "install error"},
    {0x0B, 0, kOk, "fully redundant"},
    {0x0B, 1, kCritical, "redundancy lost"},
    {0x0B, 2, kWarning, "redundancy degraded"},
    {0x0B, 3, kWarning, "not redundant, sufficient (was redundant)"},
    {0x0B, 4, kWarning, "not redundant, sufficient (was insufficient)"},
    {0x0B, 5, kCritical, "not redundant, insufficient"},
    {0x0B, 6, kWarning, "redundancy degraded from full"},
    {0x0B, 7, kWarning, "redundancy degraded from none"},
    {0x0C, 0, kOk, "D0"},
    {0x0C, 1, kOk, "D1"},
    {0x0C, 2, kOk, "D2"},
    {0x0C, 3, kOk, "D3"},
};

constexpr const char* kSensorTypes[] = {
    "reserved",
    "temperature",
    "voltage",
    "current",
    "fan",  // 0
    "physical security",
    "platform security",
    "processor",
    "power supply",  // 5
    "power unit",
    "cooling device",
    "other unit",
    "memory",
    "drive slot",  // 9
    "memory resize",
    "system firmware",
    "event logging",
    "watchdog 1",
    "system event",  // 14
    "critical interrupt",
    "button",
    "module",
    "microcontroller",
    "add-in card",  // 19
    "chassis",
    "chip set",
    "other part",
    "cable",
    "terminator",
    "system boot",  // 24
    "boot error",
    "OS boot",
    "OS stop",
    "slot",
    "ACPI power state",
    "watchdog 2",  // 30
    "platform alert",
    "entity presence",
    "monitor chip",
    "LAN",
    "management subsystem",  // 36
    "battery",
    "session audit",
    "version change",
    "part state",  // 41
};

constexpr const char* kEventTypes[] = {
    "unspecified",  "threshold",   "usage",        "asserted", "predictive failure",
    "limit",        "performance", "severity",     "presence", "enablement",
    "availability", "redundancy",  "device power",
};

// States that say whether the sensor's entity is there.
struct PresenceState {
    int eventType;
    int type;  // for states of a sensor type
    int offset;
    bool meansPresent;
};

constexpr int kAnyType = -1;

constexpr PresenceState kPresenceStates[] = {
    {0x08, kAnyType, 1, true},
    {kSensorSpecificEventType, 0x07, 7, true},   // processor
    {kSensorSpecificEventType, 0x08, 0, true},   // power supply
    {kSensorSpecificEventType, 0x0C, 6, true},   // memory
    {kSensorSpecificEventType, 0x0D, 0, true},   // drive slot
    {kSensorSpecificEventType, 0x21, 2, true},   // slot
    {kSensorSpecificEventType, 0x25, 1, false},  // entity presence
    {kSensorSpecificEventType, 0x29, 2, true},   // battery
    {kSensorSpecificEventType, 0x2C, 0, false},  // state of a part
};

}  // namespace

std::span<const StateMeaning> GenericStates() {
    return kGenericStates;
}

const StateMeaning* MeaningOf(const SensorRecord& record, int offset) {
    const bool isSpecific = record.eventType == kSensorSpecificEventType;
    const auto states = isSpecific ? SpecificStates() : GenericStates();
    const int type = isSpecific ? record.type : record.eventType;
    const auto found = std::find_if(states.begin(), states.end(), [&](const StateMeaning& state) {
        return state.type == type && state.offset == offset;
    });
    return found == states.end() ? nullptr : &*found;
}

std::optional<bool> PresenceOf(const SensorRecord& record, unsigned states) {
    for (const PresenceState& row : kPresenceStates) {
        if (row.eventType != record.eventType) continue;
        if (row.type != kAnyType && row.type != record.type) continue;
        const unsigned bit = 1u << row.offset;
        if ((record.mask & bit) == 0) return std::nullopt;
        return ((states & bit) != 0) == row.meansPresent;
    }
    return std::nullopt;
}

std::string SensorTypeName(int type) {
    constexpr int kFirstOfMaker = 0xC0;
    if (static_cast<std::size_t>(type) < std::size(kSensorTypes)) return kSensorTypes[type];
    return (type >= kFirstOfMaker ? "maker's type " : "type ") +
           HexText(static_cast<unsigned>(type));
}

std::string SensorTypeText(int type) {
    return SensorTypeName(type) + " (" + std::to_string(type) + ')';
}

std::string EventTypeName(int eventType) {
    if (eventType == kSensorSpecificEventType) return "states of the sensor type";
    if (static_cast<std::size_t>(eventType) < std::size(kEventTypes)) return kEventTypes[eventType];
    return "states of the maker";
}

std::optional<int> SensorTypeNamed(const std::string& name) {
    const auto found = std::find(std::begin(kSensorTypes), std::end(kSensorTypes), name);
    if (found == std::end(kSensorTypes)) return std::nullopt;
    return static_cast<int>(found - std::begin(kSensorTypes));
}

}  // namespace tool
