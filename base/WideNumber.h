// SPDX-License-Identifier: MIT
//
// Numbers of up to 256 binary digits, computed in integers alone: results are the same for every
// processor and word size, whatever precision and rounding an agent has set for floating point.
#ifndef TALVANE_BASE_WIDENUMBER_H
#define TALVANE_BASE_WIDENUMBER_H

#include "base/WideFraction.h"

namespace talvane {

// fraction * 2^exponent, negated where `negative` is set. The fraction's first digit is 1, unless
// the value is 0. An operation's result has the size of the operand with fewer words. It is cut off
// after its last digit: its error is below one unit of that digit.
struct WideNumber {
    bool negative;
    int exponent;
    WideFraction fraction;
};

// What 0 has for an exponent: less than all others.
constexpr int kExponentOf0 = -0x10000;

// The same value. The double is finite, the size 2 at least.
WideNumber Widened(double value, int size);
WideNumber Widened(const WideFraction& fraction);

// The nearest double, of two equally near the even one. What rounds to more than the largest double
// is infinite.
double Nearest(const WideNumber& number);

WideNumber operator-(const WideNumber& number);
// Where the signs differ, the error is below one unit of the larger operand's last digit.
WideNumber operator+(const WideNumber& a, const WideNumber& b);
WideNumber operator-(const WideNumber& a, const WideNumber& b);
WideNumber operator*(const WideNumber& a, const WideNumber& b);

// dividend / divisor. Neither has more than 63 digits, and the divisor is not 0. The last digit is
// 1 where digits are cut off.
WideNumber Ratio(const WideNumber& dividend, const WideNumber& divisor);

}  // namespace talvane

#endif
