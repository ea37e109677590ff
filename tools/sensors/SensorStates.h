// SPDX-License-Identifier: MIT
//
// The states of sensors in words, each with its verdict (IPMI 2.0, tables 42-2 and 42-3). This is
// the table of docs/health.md.
#ifndef TALVANE_TOOLS_SENSORS_SENSORSTATES_H
#define TALVANE_TOOLS_SENSORS_SENSORSTATES_H

#include <optional>
#include <span>
#include <string>

#include "tools/sensors/SensorRecord.h"
#include "tools/sensors/Verdict.h"

namespace tool {

struct StateMeaning {
    unsigned char type;  // sensor type, or event/reading type of a generic state
    unsigned char offset;
    Verdict verdict;
    const char* words;
};

// By type and offset.
std::span<const StateMeaning> GenericStates();   // of the event/reading types 2 to 12
std::span<const StateMeaning> SpecificStates();  // of sensor types with states of their own

// The meaning of a state of a discrete sensor. Null for a state that the standard does not define,
// and for states that only the sensor's maker knows.
const StateMeaning* MeaningOf(const SensorRecord& record, int offset);

// Whether the states of a discrete sensor say that its entity is there; nothing for a sensor that
// does not report it.
std::optional<bool> PresenceOf(const SensorRecord& record, unsigned states);

// "power supply", "fan"; the number in hexadecimal for a code without a name.
std::string SensorTypeName(int type);
// "power supply (8)".
std::string SensorTypeText(int type);
// The event/reading type: "threshold", "redundancy", "states of the sensor type".
std::string EventTypeName(int eventType);
// The code of such a name; nothing for any other text.
std::optional<int> SensorTypeNamed(const std::string& name);

}  // namespace tool

#endif
