// SPDX-License-Identifier: MIT
//
// The temperatures, voltages and fans of the BMC: readings, states and thresholds.
#ifndef TALVANE_TOOLS_RECORDS_SENSORS_H
#define TALVANE_TOOLS_RECORDS_SENSORS_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"
#include "tools/library/Limits.h"

namespace tool {

struct SensorState {
    std::string name;
    int number;
    int entity;
    int type;
    std::string reading;
    std::string state;   // of a discrete sensor
    std::string lowest;  // that it can report; of voltages only
    std::string highest;
    Limits limits;        // that the BMC holds for this sensor
    Limits recordLimits;  // of the library's record
    bool isSigned;        // values that the library converts differently from the standard
    bool isUnavailable;   // the BMC has no valid reading; the library shows the byte in its place
};

struct SensorGroup {
    int quantity;  // listed or not: the library lists the first 16 fans, 32 others
    std::vector<SensorState> listed;
};

struct Sensors {
    int records;  // in the repository
    SensorGroup temperatures;
    SensorGroup voltages;
    SensorGroup fans;
};

// Nothing when the source cannot be read.
std::optional<Sensors> ReadSensors();

// The limit that the reading has reached as text, "ok" for none. Empty where nothing can be told:
// no valid reading, no limit, a percentage (its limits are none), signed values.
std::string LimitState(const SensorState& sensor);

std::string ToText(const Sensors& sensors);
Json ToJson(const Sensors& sensors);

}  // namespace tool

#endif
