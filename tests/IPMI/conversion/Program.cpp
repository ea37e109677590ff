// SPDX-License-Identifier: MIT
//
// Prints what the conversions give in a program built the way this one is.

#include <cstdio>

#include "Grid.h"
#include "IPMI/Sensor.h"

int main() {
    Sensor sensor;
    return std::fputs(ConversionGrid(sensor).c_str(), stdout) < 0 || std::fflush(stdout) != 0;
}
