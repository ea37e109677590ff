// SPDX-License-Identifier: MIT
//
// Arguments of every magnitude, among them those for which rounding is hard.

#include "RandomArguments.h"

#include <bit>
#include <cmath>

double RandomArguments::AnyDouble() {
    return std::bit_cast<double>(random_());
}

double RandomArguments::Positive() {
    switch (random_() % 3) {
        case 0:
            return std::ldexp(Digits(), Between(-1074, 1023));
        case 1:
            return std::ldexp(Digits(), Between(-20, 20));
        default:
            return 1.0 + std::ldexp(Digits(), Between(-53, -2)) * (random_() % 2 == 0 ? 1 : -1);
    }
}

double RandomArguments::ExponentFor(double base) {
    const double digits = std::log2(base);
    if (digits == 0) return Digits();
    constexpr int kNearOne = -60;
    constexpr int kPastTheEnds = 10;
    const double power = std::ldexp(Digits(), Between(kNearOne, kPastTheEnds));
    return (random_() % 2 == 0 ? power : -power) / digits;
}

double RandomArguments::Near(double other, int distance) {
    const double near = std::ldexp(Digits(), std::ilogb(other) + Between(-distance, distance));
    return random_() % 2 == 0 ? near : -near;
}

double RandomArguments::Digits() {
    constexpr int kFractionDigits = 52;
    return 1.0 +
           std::ldexp(static_cast<double>(random_() >> (64 - kFractionDigits)), -kFractionDigits);
}

int RandomArguments::Between(int low, int high) {
    return low + static_cast<int>(random_() % static_cast<unsigned>(high - low + 1));
}
