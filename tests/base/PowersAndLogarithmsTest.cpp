// SPDX-License-Identifier: MIT
//
// Special values, exact and hard cases, and random arguments of powers and logarithms.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>

#include "Expected.h"
#include "HardCases.h"
#include "RandomArguments.h"
#include "SpecialDoubles.h"
#include "base/PowersAndLogarithms.h"

using namespace talvane;

namespace {

std::uint64_t Bits(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

// Every kind of argument that a function treats in a way of its own, and its neighbours.
constexpr double kArguments[] = {
    0.0,        -0.0,       1.0,        -1.0,        2.0,          -2.0,          3.0,
    -3.0,       4.0,        5.0,        -5.0,        0.5,          -0.5,          0.33,
    1.5,        -1.5,       2.5,        1000.0,      -1000.0,      0x1p52,        -0x1p52,
    0x1p53 - 1, 1 - 0x1p53, 0x1p53,     0x1p53 + 2,  0x1p63,       0x1p64,        -0x1p64,
    1e300,      -1e300,     1e-300,     -1e-300,     kLeast,       -kLeast,       kLargest,
    -kLargest,  kInfinity,  -kInfinity, kNotANumber, -kNotANumber, 1.0 + 0x1p-52, 1.0 - 0x1p-53,
    -1074.0,    -1075.0,    -1076.0,    1023.0,      1024.0,       -0x1p-1022,    0x1p-1022};

TEST(PowerTest, OfSpecialArgumentsIsTheCLibrarys) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    for (const double base : kArguments)
        for (const double exponent : kArguments) {
            if (std::isnan(base) && std::isnan(exponent)) continue;  // the one or the other
            EXPECT_EQ(Bits(Power(base, exponent)), Bits(RoundedOnce(powf128(base, exponent))))
                << base << "^" << exponent;
        }
}

TEST(PowerTest, OfANegativeNumberToAFractionPrintsAsMinusNan) {
    EXPECT_TRUE(std::isnan(Power(-2.0, 0.33)));
    EXPECT_TRUE(std::signbit(Power(-2.0, 0.33)));
}

TEST(PowerTest, OfHardArgumentsIsTheNearest) {
    for (const auto& [base, exponent, nearest] : kHardPowers)
        EXPECT_EQ(Bits(Power(base, exponent)), Bits(nearest))
            << std::hexfloat << base << "^" << exponent;
}

// root^numerator, where it has 54 digits and so lies halfway between two doubles: the even one.
// Otherwise 0.
double EvenNeighbour(std::uint64_t root, int numerator) {
    std::uint64_t power = 1;
    for (int i = 0; i < numerator; ++i) power *= root;
    if (power >> 53 != 1) return 0.0;
    return static_cast<double>(power % 4 == 1 ? power - 1 : power + 1);
}

// Expects root^numerator, if it lies halfway, from all (root^denominator)^(numerator /
// denominator). Returns how many there were.
int ExpectEvenNeighbour(std::uint64_t root, int numerator) {
    const double even = EvenNeighbour(root, numerator);
    if (even == 0) return 0;
    int count = 0;
    auto base = static_cast<double>(root);
    for (int denominator = 1; denominator < numerator; denominator *= 2, base *= base) {
        if (denominator > 1 && numerator % 2 == 0) break;
        for (const int scale : {-3, 0, 2}) {
            const double result = Power(std::ldexp(base, scale * denominator),
                                        static_cast<double>(numerator) / denominator);
            EXPECT_EQ(result, std::ldexp(even, scale * numerator))
                << root << "^" << numerator << ", denominator " << denominator;
            ++count;
        }
    }
    return count;
}

TEST(PowerTest, HalfwayBetweenTwoDoublesIsTheEvenOne) {
    int count = 0;
    for (int numerator = 2; numerator <= 34; ++numerator) {
        const double lowest = std::pow(2.0, 53.0 / numerator);
        const double highest = std::pow(2.0, 54.0 / numerator);
        const double step = std::fmax(2.0, (highest - lowest) / 50);
        for (double root = lowest; root < highest; root += step)
            count += ExpectEvenNeighbour(static_cast<std::uint64_t>(root) | 1, numerator);
    }
    EXPECT_GT(count, 1000);
}

TEST(PowerTest, HalfwayBetweenTwoDoublesIsTheEvenOneWhereTheSeriesConvergesLeast) {
    // Squares that begin like 11/16, which is as far from an eighth as can be.
    for (std::uint64_t root = 217359; root < 217500; root += 2)
        EXPECT_EQ(ExpectEvenNeighbour(root, 3), 6);
}

TEST(PowerTest, HalfOfTheLeastDoubleIs0AndWhatIsMoreIsTheLeastDouble) {
    EXPECT_EQ(Power(2.0, -1075.0), 0.0);
    EXPECT_EQ(Power(0.5, 1075.0), 0.0);
    EXPECT_EQ(Power(2.0, std::nextafter(-1075.0, 0.0)), kLeast);
    EXPECT_EQ(Power(8.0, -1074.0 / 3), kLeast);
    // 3/2 of the least double is halfway between it and the next one, which is even.
    EXPECT_EQ(Power(3 * 0x1p-537 * 0x1p-538, 1.0), 2 * kLeast);
}

TEST(SquareRootTest, IsTheNearest) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    for (const double value : kArguments)
        EXPECT_EQ(Bits(SquareRoot(value)), Bits(RoundedOnce(sqrtf128(value)))) << value;
    RandomArguments arguments(2);
    for (int i = 0; i < 10000; ++i) {
        const double value = arguments.Positive();
        EXPECT_EQ(SquareRoot(value), RoundedOnce(sqrtf128(value))) << std::hexfloat << value;
    }
}

TEST(NaturalLogarithmTest, OfSpecialArgumentsIsTheCLibrarys) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    for (const double value : kArguments)
        EXPECT_EQ(Bits(NaturalLogarithm(value)), Bits(RoundedOnce(logf128(value)))) << value;
}

TEST(NaturalLogarithmTest, OfHardArgumentsIsTheNearest) {
    for (const auto& [value, nearest] : kHardNaturalLogarithms)
        EXPECT_EQ(NaturalLogarithm(value), nearest) << std::hexfloat << value;
}

TEST(Logarithm10Test, OfSpecialArgumentsIsTheCLibrarys) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    for (const double value : kArguments)
        EXPECT_EQ(Bits(Logarithm10(value)), Bits(RoundedOnce(log10f128(value)))) << value;
}

TEST(Logarithm10Test, OfHardArgumentsIsTheNearest) {
    for (const auto& [value, nearest] : kHardLogarithms10)
        EXPECT_EQ(Logarithm10(value), nearest) << std::hexfloat << value;
}

TEST(Logarithm10Test, OfAPowerOfTenIsWhole) {
    double power = 1.0;
    for (int digits = 0; digits <= 22; ++digits, power *= 10.0)
        EXPECT_EQ(Logarithm10(power), digits);
}

}  // namespace
