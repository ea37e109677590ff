// SPDX-License-Identifier: MIT
//
// The only place where sensor values are formatted.

#include "IPMI/SensorText.h"

#include <cstdio>

namespace talvane {

void WriteFixed(char* out, double value, const char* unit) {
    std::snprintf(out, kSensorTextSize, "%.2f%s", value, unit);
}

void WriteWhole(char* out, int value, const char* unit) {
    std::snprintf(out, kSensorTextSize, "%d%s", value, unit);
}

void WriteHex(char* out, unsigned value, const char* unit) {
    std::snprintf(out, kSensorTextSize, "%X%s", value, unit);
}

}  // namespace talvane
