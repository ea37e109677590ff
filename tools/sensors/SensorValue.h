// SPDX-License-Identifier: MIT
//
// The value that a raw reading stands for, as the standard defines it (IPMI 2.0, 36.3).
#ifndef TALVANE_TOOLS_SENSORS_SENSORVALUE_H
#define TALVANE_TOOLS_SENSORS_SENSORVALUE_H

#include <optional>

#include "tools/sensors/SensorRecord.h"

namespace tool {

// Nothing for a sensor without analog readings, for one whose factors differ from reading to
// reading (linearization 0x70 and above), and where the formula has no finite result.
std::optional<double> ReadingValue(const ReadingFormula& formula, unsigned char raw);

}  // namespace tool

#endif
