// SPDX-License-Identifier: MIT
//
// The doubles at the ends of the range, and those past it.
#ifndef TALVANE_TESTS_BASE_SPECIALDOUBLES_H
#define TALVANE_TESTS_BASE_SPECIALDOUBLES_H

#include <limits>

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kLeast = std::numeric_limits<double>::denorm_min();
inline constexpr double kLargest = std::numeric_limits<double>::max();

#endif
