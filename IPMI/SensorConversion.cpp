// SPDX-License-Identifier: MIT
//
// The conversion of raw readings into values and back (IPMI 2.0, 36.3): data format, linear
// formula, linearization. Every step rounds to a double.

#include <iterator>

#include "IPMI/Sensor.h"
#include "base/DoubleArithmetic.h"
#include "base/PowersAndLogarithms.h"

using namespace talvane;

namespace {

// Bits 7-6 of Unit1: how the raw byte is to be taken.
enum class Format { Unsigned = 0, OnesComplement = 1, TwosComplement = 2, NoAnalogReading = 3 };

Format FormatOf(const SensorFormulaParameter& p) {
    return static_cast<Format>(p.Unit1 >> 6);
}

constexpr unsigned char kLinearization = 0x7F;

double Logarithm2(double value) {
    constexpr double kLogarithm10Of2 = 0.30102999566398120;
    return Quotient(Logarithm10(value), kLogarithm10Of2);
}

// Powers of ten of the exponents that fit the four bits of a record, which no reading should have
// to wait for.
constexpr int kLowestExponent = -8;
constexpr double kPowersOfTen[] = {1e-8, 1e-7, 1e-6, 1e-5, 1e-4, 1e-3, 1e-2, 1e-1,
                                   1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7};

double Scale(signed char exponent) {
    const int index = exponent - kLowestExponent;
    return index >= 0 && index < static_cast<int>(std::size(kPowersOfTen)) ? kPowersOfTen[index]
                                                                           : Power(10.0, exponent);
}

// The linearizations in the order of their codes (IPMI 2.0, 43.1, byte 24). A value outside of a
// function's domain becomes 0.
double Linearized(int code, double y) {
    switch (code) {
        case 0:
            return y;
        case 1:
            return y > 0 ? NaturalLogarithm(y) : 0.0;
        case 2:
            return y > 0 ? Logarithm10(y) : 0.0;
        case 3:
            return y > 0 ? Logarithm2(y) : 0.0;
        case 4:
            return Power(2.72, y);  // Kept: the base is not e.
        case 5:
            return Power(10.0, y);
        case 6:
            return Power(2.0, y);
        case 7:
            return y != 0 ? Quotient(1.0, y) : 0.0;
        case 8:
            return Power(y, 2.0);
        case 9:
            return Power(y, 3.0);
        case 10:
            return y >= 0 ? SquareRoot(y) : 0.0;
        case 11:
            return Power(y, 0.33);  // Kept: not a third.
        default:
            return 0.0;
    }
}

// Undoes a linearization. Returns false where it cannot be undone.
bool Delinearized(int code, double value, double& x) {
    switch (code) {
        case 0:
            x = value;
            return true;
        case 1:
            x = Power(4.0, value);  // Kept: another base than forward.
            return true;
        case 2:
            x = Power(10.0, value);
            return true;
        case 3:
            x = Power(2.0, value);
            return true;
        case 4:
            if (!(value > 0)) return false;
            x = NaturalLogarithm(value);
            return true;
        case 5:
            if (!(value > 0)) return false;
            x = Logarithm10(value);
            return true;
        case 6:
            if (!(value > 0)) return false;
            x = Logarithm2(value);
            return true;
        case 7:
            if (value == 0) return false;
            x = Quotient(1.0, value);
            return true;
        case 8:
            if (value < 0) return false;
            x = SquareRoot(value);
            return true;
        case 9:
            x = Power(value, 0.333);  // Kept: another root than forward's.
            return true;
        case 10:
            x = Power(value, 2.0);
            return true;
        case 11:
            x = Power(value, 3.0);
            return true;
        default:
            return false;
    }
}

}  // namespace

double Sensor::GetFormulaInput(SensorFormulaParameter p, unsigned char x) {
    const double offset = Product(p.B, Scale(p.BExp));
    const double multiple = p.M * x;  // 24 bits at most: nothing to be rounded
    return Product(Sum(multiple, offset), Scale(p.RExp));
}

double Sensor::ReadingConversion(SensorFormulaParameter p, unsigned char raw) {
    // Kept: the complement is a count, so that readings of the signed formats are never negative.
    switch (FormatOf(p)) {
        case Format::Unsigned:
            return GetFormulaInput(p, raw);
        case Format::OnesComplement:
            return GetFormulaInput(p, static_cast<unsigned char>(0xFF - raw));
        case Format::TwosComplement:
            return GetFormulaInput(p, static_cast<unsigned char>((256 - raw) % 256));
        case Format::NoAnalogReading:
            break;
    }
    return 0.0;
}

int Sensor::GetReadingConversion(SensorFormulaParameter p, unsigned char raw, double& value) {
    value = Linearized(p.SensorLinearization & kLinearization, ReadingConversion(p, raw));
    return 0;
}

int Sensor::GetRawValue(SensorFormulaParameter p, double y, unsigned char& raw) {
    raw = 0;
    if (p.M == 0) return 0;
    const double offset = Product(p.B, Scale(p.BExp));
    const double x = Quotient(Difference(Quotient(y, Scale(p.RExp)), offset), p.M);
    raw = static_cast<unsigned char>(ToInt16(x) & 0xFF);
    return 0;
}

int Sensor::ValueConversion(SensorFormulaParameter p, unsigned char& raw) {
    if (FormatOf(p) == Format::OnesComplement) raw = static_cast<unsigned char>(0xFF - raw);
    if (FormatOf(p) == Format::TwosComplement) raw = static_cast<unsigned char>((256 - raw) % 256);
    return 0;
}

int Sensor::GetValueConversion(SensorFormulaParameter p, unsigned char& raw, double value) {
    raw = 0;
    double x = 0.0;
    if (!Delinearized(p.SensorLinearization & kLinearization, value, x)) return 0;
    unsigned char converted = 0;
    (void)GetRawValue(p, x, converted);  // result not used: always 0
    (void)ValueConversion(p, converted);
    raw = converted;
    return 0;
}
