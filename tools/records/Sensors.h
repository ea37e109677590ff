// SPDX-License-Identifier: MIT
//
// All sensors of the BMC's repository: readings, states and thresholds.
#ifndef TALVANE_TOOLS_RECORDS_SENSORS_H
#define TALVANE_TOOLS_RECORDS_SENSORS_H

#include <optional>
#include <string>

#include "tools/base/Json.h"
#include "tools/sensors/AllSensors.h"

namespace tool {

// Nothing when the source cannot be read.
std::optional<AllSensors> ReadSensors();

std::string ToText(const AllSensors& all);
Json ToJson(const AllSensors& all);

}  // namespace tool

#endif
