// SPDX-License-Identifier: MIT
//
// The one place where sensor values are formatted; what exceeds a text of the sensor tables is cut.

#include "IPMI/SensorText.h"

#include <cstdio>

void WriteFixed(char* out, double value, const char* unit) {
    std::snprintf(out, kTextSize, "%.2f%s", value, unit);
}

void WriteWhole(char* out, int value, const char* unit) {
    std::snprintf(out, kTextSize, "%d%s", value, unit);
}

void WriteHex(char* out, unsigned value, const char* unit) {
    std::snprintf(out, kTextSize, "%X%s", value, unit);
}
