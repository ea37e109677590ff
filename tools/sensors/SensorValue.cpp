// SPDX-License-Identifier: MIT
//
// y = L((M x + B 10^K1) 10^K2)

#include "tools/sensors/SensorValue.h"

#include <cmath>

namespace tool {
namespace {

int SignedRaw(ReadingFormula::Format format, unsigned char raw) {
    constexpr int kSignBit = 0x80;
    if ((raw & kSignBit) == 0) return raw;
    if (format == ReadingFormula::Format::kOnesComplement) return raw - 0xFF;
    if (format == ReadingFormula::Format::kTwosComplement) return raw - 0x100;
    return raw;
}

// Multiplies and divides by whole powers of ten, so that 126 * 10^-1 is 12.6.
double Scaled(double value, int exponent) {
    const double power = std::pow(10.0, std::abs(exponent));
    return exponent < 0 ? value / power : value * power;
}

std::optional<double> LinearizedValue(int linearization, double y) {
    switch (linearization) {
        case 0:
            return y;
        case 1:
            return std::log(y);
        case 2:
            return std::log10(y);
        case 3:
            return std::log2(y);
        case 4:
            return std::exp(y);
        case 5:
            return std::pow(10.0, y);
        case 6:
            return std::exp2(y);
        case 7:
            return 1 / y;
        case 8:
            return y * y;
        case 9:
            return y * y * y;
        case 10:
            return std::sqrt(y);
        case 11:
            return std::cbrt(y);
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<double> ReadingValue(const ReadingFormula& formula, unsigned char raw) {
    if (formula.format == ReadingFormula::Format::kNone) return std::nullopt;
    const double b = Scaled(formula.b, formula.bExponent);
    const double linear =
        Scaled(formula.m * SignedRaw(formula.format, raw) + b, formula.resultExponent);
    const auto value = LinearizedValue(formula.linearization, linear);
    if (!value || !std::isfinite(*value)) return std::nullopt;
    return value;
}

}  // namespace tool
