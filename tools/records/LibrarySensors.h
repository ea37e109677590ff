// SPDX-License-Identifier: MIT
//
// The temperatures, voltages and fans of the BMC: readings, states and thresholds.
#ifndef TALVANE_TOOLS_RECORDS_LIBRARYSENSORS_H
#define TALVANE_TOOLS_RECORDS_LIBRARYSENSORS_H

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
    std::string lowest;  // value that it can report; of voltages only
    std::string highest;
    Limits limits;        // those that the BMC holds for this sensor
    Limits recordLimits;  // those of the library's record
    bool isSigned;        // the library converts its values differently from the standard
    bool isUnavailable;   // the BMC has no valid reading; the library shows a byte without meaning
};

struct SensorGroup {
    int quantity;  // of all; the library lists the first 16 fans or 32 others
    std::vector<SensorState> listed;
};

struct LibrarySensors {
    int records;  // in the repository
    SensorGroup temperatures;
    SensorGroup voltages;
    SensorGroup fans;
};

// Nothing when the source cannot be read.
std::optional<LibrarySensors> ReadLibrarySensors();

// The name of the limit that the reading has reached; "ok" for none. Empty when it cannot be known:
// without a valid reading, without limits, for a percentage (its limits are not percentages), and
// for signed values.
std::string LimitState(const SensorState& sensor);

std::string ToText(const LibrarySensors& sensors);
Json ToJson(const LibrarySensors& sensors);

}  // namespace tool

#endif
