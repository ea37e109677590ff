// SPDX-License-Identifier: MIT
//
// The special values of each function, and the choice of how many digits decide the rounding.

#include "base/PowersAndLogarithms.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>

#include "base/WideFunctions.h"
#include "base/WideNumber.h"

namespace talvane {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = -std::numeric_limits<double>::quiet_NaN();

using WideFunction = WideNumber(double, double, int size);

// 96 digits tell the nearest double but for one argument in 2^26.
constexpr int kQuickSize = 3;

// 256 digits tell it for the others, unless the exact value lies halfway between two doubles, which
// no number of digits shows. What is so near is taken to lie there: of random values one in 2^186
// would come so near without lying there, and less than 2^122 pairs of arguments have a power that
// is not infinite, 0 or 1. There are less logarithms still.
double NearestDouble(WideFunction* function, double a, double b) {
    double low = 0.0;
    double high = 0.0;
    for (const int size : {kQuickSize, kMaxWords}) {
        const WideNumber value = function(a, b, size);
        const WideNumber error = LargestError(value);
        low = Nearest(value - error);
        high = Nearest(value + error);
        if (low == high) return low;
    }
    return std::bit_cast<std::uint64_t>(low) % 2 == 0 ? low : high;
}

// From all digits of the power: four times 53 fit. The exponent is 1 to 4.
double ExactPower(double base, int exponent) {
    const WideNumber wide = Widened(base, 2 * exponent);
    WideNumber power = wide;
    for (int i = 1; i < exponent; ++i) power = power * wide;
    return Nearest(power);
}

enum class Parity { kEven, kOdd, kNotWhole };

Parity ParityOf(double value) {
    constexpr double kAllEven = 0x1p53;  // and what lies above
    if (std::fabs(value) >= kAllEven) return Parity::kEven;
    const auto whole = static_cast<std::int64_t>(value);
    if (static_cast<double>(whole) != value) return Parity::kNotWhole;
    return whole % 2 == 0 ? Parity::kEven : Parity::kOdd;
}

// The base is 0 or more but not 1, and the exponent is not 0.
double PowerOfMagnitude(double base, double exponent) {
    if (base == 0 || std::isinf(base) || std::isinf(exponent))
        return (base > 1) == (exponent > 0) ? kInfinity : 0.0;
    for (const int exact : {1, 2, 3, 4})
        if (exponent == exact) return ExactPower(base, exact);
    return NearestDouble(WidePower, base, exponent);
}

double NearestLogarithm(WideFunction* function, double value) {
    if (std::isnan(value) || value == kInfinity) return value;
    if (value == 0) return -kInfinity;
    if (value < 0) return kNotANumber;
    return value == 1 ? 0.0 : NearestDouble(function, value, 0.0);
}

}  // namespace

double Power(double base, double exponent) {
    if (exponent == 0 || base == 1) return 1.0;
    if (std::isnan(base) || std::isnan(exponent)) return base + exponent;
    const Parity parity = ParityOf(exponent);
    if (base < 0 && !std::isinf(base) && parity == Parity::kNotWhole) return kNotANumber;
    const double magnitude = std::fabs(base);
    const double power = magnitude == 1 ? 1.0 : PowerOfMagnitude(magnitude, exponent);
    return std::signbit(base) && parity == Parity::kOdd ? -power : power;
}

double SquareRoot(double value) {
    if (value == 0) return value;  // which may be -0
    return value < 0 ? kNotANumber : Power(value, 0.5);
}

double NaturalLogarithm(double value) {
    return NearestLogarithm(WideNaturalLogarithm, value);
}

double Logarithm10(double value) {
    return NearestLogarithm(WideLogarithm10, value);
}

}  // namespace talvane
