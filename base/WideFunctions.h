// SPDX-License-Identifier: MIT
//
// Powers and logarithms of doubles, computed with `size` words. Bases and values are finite, above
// 0 and not 1; exponents are finite and not 0.
#ifndef TALVANE_BASE_WIDEFUNCTIONS_H
#define TALVANE_BASE_WIDEFUNCTIONS_H

#include "base/WideNumber.h"

namespace talvane {

WideNumber WidePower(double base, double exponent, int size);
// The second argument is not looked at; it gives all three the same type.
WideNumber WideNaturalLogarithm(double value, double, int size);
WideNumber WideLogarithm10(double value, double, int size);

// More than such a result can differ from the exact value.
WideNumber LargestError(const WideNumber& result);

}  // namespace talvane

#endif
