// SPDX-License-Identifier: MIT
//
// The results of many conversions as text, to be compared between builds.
#ifndef TALVANE_TESTS_IPMI_CONVERSION_GRID_H
#define TALVANE_TESTS_IPMI_CONVERSION_GRID_H

#include <string>

class Sensor;

// One line for each of some hundred formulas: the formula and, of all 256 raw bytes, a hash of the
// values' bits and one of the bytes that the values become again.
std::string ConversionGrid(Sensor& sensor);

#endif
