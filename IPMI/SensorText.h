// SPDX-License-Identifier: MIT
//
// Texts of values with their unit, as the fields of SensorDescription hold them: numbers and units
// come from the controller, so a longer text is cut to the field.
#ifndef TALVANE_IPMI_SENSORTEXT_H
#define TALVANE_IPMI_SENSORTEXT_H

#include <cstddef>

// The size of a text field, terminator included.
constexpr std::size_t kTextSize = 64;

void WriteFixed(char* out, double value, const char* unit);  // with two decimals
void WriteWhole(char* out, int value, const char* unit);
void WriteHex(char* out, unsigned value, const char* unit);  // upper case

#endif
