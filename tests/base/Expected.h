// SPDX-License-Identifier: MIT
//
// The doubles nearest to powers and logarithms, computed by the C library with 64 digits, and with
// 113 where these leave a doubt. What lies within one unit of the 113th digit of halfway between
// two doubles is told by neither.
#ifndef TALVANE_TESTS_BASE_EXPECTED_H
#define TALVANE_TESTS_BASE_EXPECTED_H

__extension__ typedef __float128 WideDouble;

// The C library declares its functions of this type to gcc alone.
#ifdef __clang__
extern "C" {
WideDouble powf128(WideDouble base, WideDouble exponent);
WideDouble sqrtf128(WideDouble value);
WideDouble logf128(WideDouble value);
WideDouble log10f128(WideDouble value);
}
#endif

// Whether this compiler's arithmetic of 113 digits is right. clang 14 calls the functions for it
// with the arguments in other places than those functions, which are gcc's, take them from.
bool HasWideArithmetic();
inline constexpr const char* kNoWideArithmetic = "this compiler has no arithmetic of 113 digits";

// Rounded to a double, and no further on the way.
double RoundedOnce(WideDouble wide);

double ExpectedPower(double base, double exponent);
double ExpectedNaturalLogarithm(double value);
double ExpectedLogarithm10(double value);

#endif
