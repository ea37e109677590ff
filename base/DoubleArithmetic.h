// SPDX-License-Identifier: MIT
//
// Arithmetic whose every step rounds to an IEEE double, also on the x87, which computes with more
// digits and would round twice: results are those of a processor that computes in doubles, at every
// optimisation level and whatever precision and rounding an agent has set.
#ifndef TALVANE_BASE_DOUBLEARITHMETIC_H
#define TALVANE_BASE_DOUBLEARITHMETIC_H

#include <limits>

namespace talvane {

double Sum(double a, double b);
double Difference(double a, double b);
double Product(double a, double b);
double Quotient(double dividend, double divisor);

// Truncate toward zero. A value that does not fit, or NaN, becomes the lowest value of the type, as
// the processor stores it.
inline int ToInt32(double value) {
    return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value)
                                                         : std::numeric_limits<int>::min();
}

inline short ToInt16(double value) {
    return value > -32769.0 && value < 32768.0 ? static_cast<short>(value)
                                               : std::numeric_limits<short>::min();
}

}  // namespace talvane

#endif
