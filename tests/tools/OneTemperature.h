// SPDX-License-Identifier: MIT
//
// A machine with nothing but a temperature, to which a test adds its reading.
#ifndef TALVANE_TESTS_TOOLS_ONETEMPERATURE_H
#define TALVANE_TESTS_TOOLS_ONETEMPERATURE_H

// "CPU Temp", of a processor: non-critical from 80 degrees, critical from 90.
inline constexpr const char* kOneTemperature =
    "bmc kcs\n"
    "sensor 0x10 \"CPU Temp\"\n"
    "type 1\n"
    "entity 3\n"
    "unit 1\n"
    "thresholds 0x10 0x18 0 0 0 80 90 0\n";

#endif
