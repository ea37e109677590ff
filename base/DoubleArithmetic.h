// SPDX-License-Identifier: MIT
//
// Arithmetic whose every step rounds to an IEEE double, also on the x87, which computes with more
// digits and would round twice: results are those of a processor that computes in doubles, at every
// optimisation level.
#ifndef TALVANE_BASE_DOUBLEARITHMETIC_H
#define TALVANE_BASE_DOUBLEARITHMETIC_H

#include <cmath>
#include <limits>

namespace talvane {

// 113 binary digits: more than twice a double's 53 and two. A sum, product or quotient of doubles
// that was rounded to so many digits rounds to a double as the exact result would (Figueroa, "When
// is double rounding innocuous?", 1995).
__extension__ typedef __float128 WideDouble;

// The step through memory keeps the compiler from computing in narrower types from the start.
inline double RoundedOnce(WideDouble wide) {
    const volatile WideDouble stored = wide;
    return static_cast<double>(stored);
}

inline double Sum(double a, double b) {
    return RoundedOnce(WideDouble{a} + WideDouble{b});
}

inline double Difference(double a, double b) {
    return RoundedOnce(WideDouble{a} - WideDouble{b});
}

inline double Product(double a, double b) {
    return RoundedOnce(WideDouble{a} * WideDouble{b});
}

inline double Quotient(double dividend, double divisor) {
    return RoundedOnce(WideDouble{dividend} / WideDouble{divisor});
}

// The C library's result as a double, whatever the register that it comes in holds.
inline double Stored(double value) {
    const volatile double stored = value;
    return stored;
}

// The C library's own square root rounds once; the processor's instruction, which the compiler
// would put in its place, does not.
inline double SquareRoot(double value) {
    static double (*const volatile squareRoot)(double) = std::sqrt;
    return Stored(squareRoot(value));
}

// Truncation toward zero. What does not fit (NaN included) becomes what the processor stores then:
// the lowest value of the type.
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
