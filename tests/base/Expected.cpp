// SPDX-License-Identifier: MIT
//
// The nearest doubles by the C library: a quick answer where it is certain, else one of 113 digits.

#include "Expected.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

// Whether a result of the x87, whose functions err by less than a unit of the last digit, tells the
// nearest double: one in the normal range, and not near halfway between two.
bool TellsNearest(long double quick) {
    constexpr long double kLowest = 0x1p-1000L;
    constexpr long double kHighest = 0x1p1000L;
    const long double magnitude = std::fabs(quick);
    if (!(magnitude > kLowest && magnitude < kHighest)) return false;
    std::uint64_t digits = 0;
    std::memcpy(&digits, &quick, sizeof digits);
    // Of 64 digits, 11 are below a double's last one.
    constexpr int kBelow = 1 << 11;
    constexpr int kMargin = 8;
    return std::abs(static_cast<int>(digits % kBelow) - kBelow / 2) > kMargin;
}

}  // namespace

bool HasWideArithmetic() {
    const volatile double three = 3;
    return RoundedOnce(WideDouble{three} / 2) == 1.5;
}

double RoundedOnce(WideDouble wide) {
    const volatile WideDouble stored = wide;
    return static_cast<double>(stored);
}

double ExpectedPower(double base, double exponent) {
    const long double quick = powl(base, exponent);
    return TellsNearest(quick) ? static_cast<double>(quick) : RoundedOnce(powf128(base, exponent));
}

double ExpectedNaturalLogarithm(double value) {
    const long double quick = logl(value);
    return TellsNearest(quick) ? static_cast<double>(quick) : RoundedOnce(logf128(value));
}

double ExpectedLogarithm10(double value) {
    const long double quick = log10l(value);
    return TellsNearest(quick) ? static_cast<double>(quick) : RoundedOnce(log10f128(value));
}
