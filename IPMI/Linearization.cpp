// SPDX-License-Identifier: MIT
//
// Data format, linear formula and linearization. Takes and returns plain numbers, so that it can be
// built and compared for other processors, too.

#include "IPMI/Linearization.h"

#include <iterator>

#include "base/DoubleArithmetic.h"
#include "base/PowersAndLogarithms.h"

namespace talvane {

namespace {

double Logarithm2(double value) {
    constexpr double kLogarithm10Of2 = 0.30102999566398120;
    return Quotient(Logarithm10(value), kLogarithm10Of2);
}

// The powers of ten for every exponent that fits the four bits of a record. They are listed because
// computing one takes long, and every reading needs two.
constexpr int kLowestExponent = -8;
constexpr double kPowersOfTen[] = {1e-8, 1e-7, 1e-6, 1e-5, 1e-4, 1e-3, 1e-2, 1e-1,
                                   1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7};

double PowerOfTen(int exponent) {
    const int index = exponent - kLowestExponent;
    return index >= 0 && index < static_cast<int>(std::size(kPowersOfTen)) ? kPowersOfTen[index]
                                                                           : Power(10.0, exponent);
}

}  // namespace

unsigned char Complemented(DataFormat format, unsigned char raw) {
    switch (format) {  // LCOV_EXCL_BR_LINE: each format has a case
        case DataFormat::kOnesComplement:
            return static_cast<unsigned char>(0xFF - raw);
        case DataFormat::kTwosComplement:
            return static_cast<unsigned char>((256 - raw) % 256);
        case DataFormat::kUnsigned:
        case DataFormat::kNoAnalogReading:
            break;
    }
    return raw;
}

double LinearValue(const LinearFormula& formula, unsigned char x) {
    const double offset = Product(formula.b, PowerOfTen(formula.bExponent));
    const double multiple = formula.m * x;  // at most 24 bits, so nothing is rounded
    return Product(Sum(multiple, offset), PowerOfTen(formula.resultExponent));
}

unsigned char LinearCount(const LinearFormula& formula, double y) {
    if (formula.m == 0) return 0;
    const double offset = Product(formula.b, PowerOfTen(formula.bExponent));
    const double multiple = Difference(Quotient(y, PowerOfTen(formula.resultExponent)), offset);
    return static_cast<unsigned char>(ToInt16(Quotient(multiple, formula.m)) & 0xFF);
}

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
            return Power(y, 0.33);  // Kept: the exponent is not one third.
        default:
            return 0.0;
    }
}

std::optional<double> Delinearized(int code, double value) {
    switch (code) {
        case 0:
            return value;
        case 1:
            return Power(4.0, value);  // Kept: the base is neither e nor 2.72.
        case 2:
            return Power(10.0, value);
        case 3:
            return Power(2.0, value);
        case 4:
            if (!(value > 0)) return {};
            return NaturalLogarithm(value);
        case 5:
            if (!(value > 0)) return {};
            return Logarithm10(value);
        case 6:
            if (!(value > 0)) return {};
            return Logarithm2(value);
        case 7:
            if (value == 0) return {};
            return Quotient(1.0, value);
        case 8:
            if (value < 0) return {};
            return SquareRoot(value);
        case 9:
            return Power(value, 0.333);  // Kept: the exponent is neither one third nor 0.33.
        case 10:
            return Power(value, 2.0);
        case 11:
            return Power(value, 3.0);
        default:
            return {};
    }
}

}  // namespace talvane
