// SPDX-License-Identifier: MIT
//
// The conversions of raw readings into values and back, as methods that agents can call and
// replace. The arithmetic is in Linearization.cpp.

#include "IPMI/Linearization.h"
#include "IPMI/Sensor.h"

using namespace talvane;

namespace {

LinearFormula FormulaOf(const SensorFormulaParameter& p) {
    return {.m = p.M, .b = p.B, .bExponent = p.BExp, .resultExponent = p.RExp};
}

// Bit 7 does not belong to the linearization code (IPMI 2.0, 43.1, byte 24).
int LinearizationOf(const SensorFormulaParameter& p) {
    return p.SensorLinearization & 0x7F;
}

}  // namespace

double Sensor::GetFormulaInput(SensorFormulaParameter p, unsigned char x) {
    return LinearValue(FormulaOf(p), x);
}

double Sensor::ReadingConversion(SensorFormulaParameter p, unsigned char raw) {
    const DataFormat format = DataFormatOf(p.Unit1);
    if (format == DataFormat::kNoAnalogReading) return 0.0;
    return GetFormulaInput(p, Complemented(format, raw));
}

int Sensor::GetReadingConversion(SensorFormulaParameter p, unsigned char raw, double& value) {
    value = Linearized(LinearizationOf(p), ReadingConversion(p, raw));
    return 0;
}

int Sensor::GetRawValue(SensorFormulaParameter p, double y, unsigned char& raw) {
    raw = LinearCount(FormulaOf(p), y);
    return 0;
}

int Sensor::ValueConversion(SensorFormulaParameter p, unsigned char& raw) {
    raw = Complemented(DataFormatOf(p.Unit1), raw);
    return 0;
}

int Sensor::GetValueConversion(SensorFormulaParameter p, unsigned char& raw, double value) {
    raw = 0;
    const std::optional<double> linear = Delinearized(LinearizationOf(p), value);
    if (!linear) return 0;
    unsigned char converted = 0;
    (void)GetRawValue(p, *linear, converted);  // results not used: both always return 0
    (void)ValueConversion(p, converted);
    raw = converted;
    return 0;
}
