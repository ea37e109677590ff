// SPDX-License-Identifier: MIT
//
// Writes a value with its unit into a text field of a SensorDescription. Numbers and units come
// from the controller, so a text that is too long is cut to the field. Texts are NUL-terminated.
#ifndef TALVANE_IPMI_SENSORTEXT_H
#define TALVANE_IPMI_SENSORTEXT_H

namespace talvane {

// Each writes at most kSensorTextSize bytes to `out`, including the NUL.
constexpr unsigned kSensorTextSize = 64;

void WriteFixed(char* out, double value, const char* unit);  // with two decimals
void WriteWhole(char* out, int value, const char* unit);
void WriteHex(char* out, unsigned value, const char* unit);  // in upper case

}  // namespace talvane

#endif
