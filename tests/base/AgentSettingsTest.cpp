// SPDX-License-Identifier: MIT
//
// An agent may have set its floating point to fewer digits, and to round elsewhere than to the
// nearest: results stay the same.

#include <fpu_control.h>
#include <gtest/gtest.h>

#include <cfenv>
#include <vector>

#include "base/DoubleArithmetic.h"
#include "base/PowersAndLogarithms.h"

using namespace talvane;

namespace {

std::vector<double> Results() {
    std::vector<double> results;
    for (const double a : {0.0, 0.1, 1.0 / 3, 2.72, 10.0, 1e-310, 12345.678})
        for (const double b : {0.33, -1.0 / 3, 2.0, 3.0, 7.5}) {
            results.insert(results.end(),
                           {Sum(a, b), Difference(a, b), Product(a, b), Quotient(a, b), Power(a, b),
                            SquareRoot(a), NaturalLogarithm(a), Logarithm10(a)});
        }
    return results;
}

// The x87's digits, and the direction of rounding of x87 and SSE.
std::vector<double> ResultsWith(unsigned digits, int direction) {
    fpu_control_t control = 0;
    _FPU_GETCW(control);
    const fpu_control_t before = control;
    control = static_cast<fpu_control_t>((control & ~_FPU_EXTENDED) | digits);
    _FPU_SETCW(control);
    std::fesetround(direction);
    std::vector<double> results = Results();
    std::fesetround(FE_TONEAREST);
    control = before;
    _FPU_SETCW(control);
    return results;
}

TEST(AgentSettingsTest, DoNotChangeResults) {
    const std::vector<double> expected = Results();
    for (const unsigned digits : {_FPU_DOUBLE, _FPU_EXTENDED})
        for (const int direction : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO})
            EXPECT_EQ(ResultsWith(digits, direction), expected)
                << "digits " << digits << ", direction " << direction;
}

}  // namespace
