// SPDX-License-Identifier: MIT
//
// Sums, products and quotients with enough digits that rounding them once gives the nearest double.

#include "base/DoubleArithmetic.h"

#include <cmath>

#include "base/WideNumber.h"

namespace talvane {
namespace {

// A product has 106 digits at most; what a sum of 128 digits loses lies 2^75 times below its larger
// operand and so decides nothing.
constexpr int kSize = 4;
// Of a quotient 64 digits are enough, as the last one tells whether there are more.
constexpr int kQuotientSize = 2;

bool AreFinite(double a, double b) {
    return std::isfinite(a) && std::isfinite(b);
}

}  // namespace

// The processor's own result where it is special, and so exact: 0 with its sign, infinity, or not a
// number.

double Sum(double a, double b) {
    if (!AreFinite(a, b) || (a == 0 && b == 0)) return a + b;
    return Nearest(Widened(a, kSize) + Widened(b, kSize));
}

double Difference(double a, double b) {
    return Sum(a, -b);
}

double Product(double a, double b) {
    if (!AreFinite(a, b) || a == 0 || b == 0) return a * b;
    return Nearest(Widened(a, kSize) * Widened(b, kSize));
}

double Quotient(double dividend, double divisor) {
    if (!AreFinite(dividend, divisor) || dividend == 0 || divisor == 0) return dividend / divisor;
    return Nearest(Ratio(Widened(dividend, kQuotientSize), Widened(divisor, kQuotientSize)));
}

}  // namespace talvane
