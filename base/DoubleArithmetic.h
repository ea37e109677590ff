// SPDX-License-Identifier: MIT
//
// Arithmetic in which every step rounds to an IEEE double. The x87 computes with more digits and
// would round twice; with these functions its results are those of a processor that computes in
// doubles, at every optimisation level.
#ifndef TALVANE_BASE_DOUBLEARITHMETIC_H
#define TALVANE_BASE_DOUBLEARITHMETIC_H

#include <cmath>
#include <limits>

namespace talvane {

// A number of 113 binary digits, more than twice the 53 of a double plus two. A sum, product or
// quotient of doubles that is rounded to so many digits first rounds to the same double as the
// exact result (Figueroa, "When is double rounding innocuous?", 1995).
__extension__ typedef __float128 WideDouble;

// The nearest double. The step through memory keeps the compiler from computing in narrower types
// from the start.
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

// A result of the C library as a double, even where the register that returns it holds more digits.
inline double Stored(double value) {
    const volatile double stored = value;
    return stored;
}

// The C library's square root rounds once. The processor's instruction, which the compiler would
// put in its place, does not.
inline double SquareRoot(double value) {
    static double (*const volatile squareRoot)(double) = std::sqrt;
    return Stored(squareRoot(value));
}

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
