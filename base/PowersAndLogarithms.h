// SPDX-License-Identifier: MIT
//
// Powers, square roots and logarithms that are rounded once: the result is the double nearest to
// the exact value, of two equally near the even one. Those of C libraries differ in the last digit
// between versions and processors.
//
// Special values are those of pow, sqrt, log and log10 (C99, F.9). What is not a number has its
// sign set, as the processor's own has.
#ifndef TALVANE_BASE_POWERSANDLOGARITHMS_H
#define TALVANE_BASE_POWERSANDLOGARITHMS_H

namespace talvane {

double Power(double base, double exponent);
double SquareRoot(double value);
double NaturalLogarithm(double value);
double Logarithm10(double value);

}  // namespace talvane

#endif
