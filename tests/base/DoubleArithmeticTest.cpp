// SPDX-License-Identifier: MIT
//
// Sums, differences, products and quotients against 113 digits that are rounded once.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>

#include "Expected.h"
#include "RandomArguments.h"
#include "SpecialDoubles.h"
#include "base/DoubleArithmetic.h"

using namespace talvane;

namespace {

constexpr double kOperands[] = {
    0.0,           -0.0,       1.0,       -1.0,       3.0,     1.0 / 3, 0x1p-1022, kLeast,
    -kLeast,       3 * kLeast, kLargest,  -kLargest,  1e300,   1e-300,  0x1p-53,   0x1p-54,
    1.0 + 0x1p-52, -5e-55,     kInfinity, -kInfinity, 0x1p-75, 0x1p-76, 0.5,       kLargest / 2};

void ExpectSame(double result, WideDouble expected) {
    const double rounded = RoundedOnce(expected);
    if (std::isnan(rounded)) {
        EXPECT_TRUE(std::isnan(result));
        return;
    }
    EXPECT_EQ(std::bit_cast<std::uint64_t>(result), std::bit_cast<std::uint64_t>(rounded));
}

// 113 digits are more than twice a double's 53 and two: a sum, product or quotient rounded to so
// many rounds to a double as the exact one does (Figueroa, "When is double rounding innocuous?",
// 1995). Below the normal range, where that does not hold, nothing is lost before the last step.
void ExpectRoundedOnce(double a, double b) {
    SCOPED_TRACE(testing::Message() << std::hexfloat << a << ", " << b);
    ExpectSame(Sum(a, b), WideDouble{a} + WideDouble{b});
    ExpectSame(Difference(a, b), WideDouble{a} - WideDouble{b});
    ExpectSame(Product(a, b), WideDouble{a} * WideDouble{b});
    ExpectSame(Quotient(a, b), WideDouble{a} / WideDouble{b});
}

TEST(DoubleArithmeticTest, RoundsSpecialArgumentsOnce) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    for (const double a : kOperands)
        for (const double b : kOperands) ExpectRoundedOnce(a, b);
}

TEST(DoubleArithmeticTest, RoundsRandomArgumentsOnce) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    RandomArguments arguments(3);
    for (int i = 0; i < 5000; ++i) {
        const double any = arguments.AnyDouble();
        ExpectRoundedOnce(any, arguments.AnyDouble());
        if (!std::isfinite(any)) continue;
        ExpectRoundedOnce(any, arguments.Near(any, 60));      // sums of overlapping digits
        ExpectRoundedOnce(any, arguments.Near(1 / any, 60));  // products of all kinds
    }
}

TEST(DoubleArithmeticTest, RoundsResultsBelowTheNormalRangeOnce) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    RandomArguments arguments(4);
    for (int i = 0; i < 5000; ++i) {
        const double small = std::ldexp(arguments.Near(1.0, 0), -1040);
        const double factor = arguments.Near(1.0, 30);
        ExpectRoundedOnce(small, factor);
        ExpectRoundedOnce(small, std::ldexp(factor, -1040));
    }
}

TEST(DoubleArithmeticTest, LooksAtEveryDigit) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    EXPECT_EQ(Sum(1.0, 0x1p-53), 1.0);
    EXPECT_EQ(Sum(1.0, 0x1.0000000000001p-53), 1.0 + 0x1p-52);
    EXPECT_EQ(Difference(1.0 + 0x1p-52, 0x1p-53), 1.0);
    EXPECT_EQ(Difference(1.0 + 0x1p-52, 0x1.fffffffffffffp-54), 1.0 + 0x1p-52);
    // 105 digits, of which the last 52 are 2^51 + 1: half of the double's last digit and a bit.
    ExpectRoundedOnce(0x187b0bec1d7da1p0, 0x115b033a3da661p0);
}

TEST(ToIntTest, OfWhatDoesNotFitIsTheLowestValue) {
    EXPECT_EQ(ToInt32(2147483647.5), 2147483647);
    EXPECT_EQ(ToInt32(2147483648.0), -2147483647 - 1);
    EXPECT_EQ(ToInt32(-2147483648.5), -2147483647 - 1);
    EXPECT_EQ(ToInt32(std::nan("")), -2147483647 - 1);
    EXPECT_EQ(ToInt32(-1.9), -1);
    EXPECT_EQ(ToInt16(32767.5), 32767);
    EXPECT_EQ(ToInt16(32768.0), -32768);
    EXPECT_EQ(ToInt16(-32769.0), -32768);
    EXPECT_EQ(ToInt16(std::nan("")), -32768);
    EXPECT_EQ(ToInt16(-1.9), -1);
}

}  // namespace
