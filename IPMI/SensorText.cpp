// SPDX-License-Identifier: MIT

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
