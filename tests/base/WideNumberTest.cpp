// SPDX-License-Identifier: MIT
//
// Wide numbers, and the constants that the functions are computed with.

#include <gtest/gtest.h>

#include <iterator>

#include "SpecialDoubles.h"
#include "base/WideConstants.h"
#include "base/WideNumber.h"

using namespace talvane;

namespace {

// The last of 256 digits bear what the series' operations cut off.
void ExpectEqual(const WideNumber& a, const WideNumber& b) {
    constexpr int kDigits = 244;
    const WideNumber difference = a - b;
    EXPECT_LT(difference.exponent, a.exponent - kDigits);
}

// ln ((1 + x) / (1 - x)) = 2 (x + x^3 / 3 + x^5 / 5 + ...), where x = numerator / denominator.
WideNumber LogarithmSeries(double numerator, double denominator) {
    const WideNumber x = Ratio(Widened(numerator, kMaxWords), Widened(denominator, kMaxWords));
    WideFraction power = x.fraction >> -x.exponent;
    const WideFraction square = power * power;
    WideFraction sum{kMaxWords, {}};
    for (unsigned odd = 1; odd < 200; odd += 2, power = power * square) sum = sum + power / odd;
    return Widened(sum) + Widened(sum);
}

TEST(WideConstantsTest, AreWhatTheirNamesSay) {
    ExpectEqual(kOne, Widened(1.0, kMaxWords));
    ExpectEqual(kLogarithmOf2, LogarithmSeries(1, 3));
    ExpectEqual(kInverseLogarithmOf2 * kLogarithmOf2, kOne);
    const WideNumber logarithmOf10 = LogarithmSeries(1, 9) + kLogarithmOf2 * Widened(3, kMaxWords);
    ExpectEqual(kInverseLogarithmOf10 * logarithmOf10, kOne);
    for (int eighths = kFirstEighths; const WideNumber& logarithm : kLogarithmsOfEighths) {
        if (eighths < 8) ExpectEqual(logarithm, -LogarithmSeries(8 - eighths, 8 + eighths));
        if (eighths > 8) ExpectEqual(logarithm, LogarithmSeries(eighths - 8, 8 + eighths));
        ++eighths;
    }
    EXPECT_EQ(Nearest(kLogarithmsOfEighths[8 - kFirstEighths]), 0.0);
    EXPECT_EQ(std::size(kLogarithmsOfEighths), 6u);
}

WideNumber Number(int exponent, std::uint32_t first, std::uint32_t second, std::uint32_t third) {
    return {false, exponent, {3, {first, second, third}}};
}

void ExpectWords(const WideNumber& number, int exponent, std::uint32_t first, std::uint32_t second,
                 std::uint32_t third) {
    EXPECT_EQ(number.exponent, exponent);
    EXPECT_EQ(number.fraction.size, 3);
    EXPECT_EQ(number.fraction.words[0], first);
    EXPECT_EQ(number.fraction.words[1], second);
    EXPECT_EQ(number.fraction.words[2], third);
}

constexpr std::uint32_t kFirst = 0x80000000;
constexpr std::uint32_t kAll = 0xFFFFFFFF;

TEST(WideNumberTest, IsExactlyTheDouble) {
    ExpectWords(Widened(1.0, 3), 1, kFirst, 0, 0);
    ExpectWords(Widened(0x1.23456789ABCDEp+5, 3), 6, 0x91A2B3C4, 0xD5E6F000, 0);
    ExpectWords(Widened(0x1p-1074, 3), -1073, kFirst, 0, 0);
    ExpectWords(Widened(0x1.8p-1022, 3), -1021, 0xC0000000, 0, 0);
    EXPECT_FALSE(Widened(3.0, 3).negative);
    EXPECT_TRUE(Widened(-3.0, 3).negative);
    EXPECT_EQ(Widened(0.0, 3).exponent, kExponentOf0);
}

TEST(WideNumberTest, SumCarries) {
    ExpectWords(Number(0, kAll, kAll, kAll) + Number(-95, kFirst, 0, 0), 1, kFirst, 0, 0);
    ExpectWords(Number(0, kFirst, 0, 0) + Number(0, kFirst, 0, 0x80), 1, kFirst, 0, 0x40);
}

TEST(WideNumberTest, SumLosesWhatLiesBelowTheLastDigit) {
    ExpectWords(Number(0, kFirst, 0, 0) + Number(-95, kFirst, 0, 0), 0, kFirst, 0, 1);
    ExpectWords(Number(0, kFirst, 0, 0) + Number(-96, kAll, kAll, kAll), 0, kFirst, 0, 0);
    ExpectWords(Number(0, kFirst, 0, 0) + Number(-1000, kAll, kAll, kAll), 0, kFirst, 0, 0);
    ExpectWords(Number(0, kFirst, 0, 0) + Number(-32, kFirst, 0, 1), 0, kFirst, kFirst, 0);
    ExpectWords(Number(0, kFirst, 0, 0) + Number(-33, kFirst, 0, 2), 0, kFirst, 0x40000000, 0);
}

TEST(WideNumberTest, DifferenceStartsWithItsFirstDigit) {
    ExpectWords(Number(0, kFirst, 0, 1) - Number(0, kFirst, 0, 0), -95, kFirst, 0, 0);
    ExpectWords(Number(1, kFirst, 0, 0) - Number(0, kAll, kAll, kAll), -94, kFirst, 0, 0);
    EXPECT_TRUE((Number(0, kFirst, 0, 0) - Number(0, kFirst, 0, 1)).negative);
    EXPECT_FALSE((Number(0, kFirst, 0, 1) - Number(0, kFirst, 0, 0)).negative);
    const WideNumber zero = Number(0, kFirst, 0, 1) - Number(0, kFirst, 0, 1);
    EXPECT_EQ(zero.exponent, kExponentOf0);
    EXPECT_FALSE(zero.negative);
    ExpectWords(zero + Number(3, kFirst, 0, 7), 3, kFirst, 0, 7);
}

TEST(WideNumberTest, ProductHasItsFirstDigits) {
    ExpectWords(Number(5, kAll, kAll, kAll) * Number(7, kAll, kAll, kAll), 12, kAll, kAll,
                kAll - 1);
    ExpectWords(Number(5, kFirst, 0, 1) * Number(-7, kFirst, 0, 0), -3, kFirst, 0, 1);
    ExpectWords(Number(0, kFirst, 1, 0) * Number(0, kFirst, 0, 1), -1, kFirst, 1, 1);
    EXPECT_TRUE((Number(0, kFirst, 0, 0) * -Number(0, kFirst, 0, 0)).negative);
    EXPECT_FALSE((-Number(0, kFirst, 0, 0) * -Number(0, kFirst, 0, 0)).negative);
}

TEST(WideNumberTest, ResultsHaveTheSmallerSize) {
    EXPECT_EQ((kOne + Widened(1.0, 3)).fraction.size, 3);
    EXPECT_EQ((Widened(1.0, 3) * kOne).fraction.size, 3);
    EXPECT_EQ(Ratio(kOne, Widened(1.0, 3)).fraction.size, 3);
}

TEST(WideNumberTest, RatioTellsThatThereAreMoreDigits) {
    ExpectWords(Ratio(Widened(1.0, 3), Widened(3.0, 3)), -1, 0xAAAAAAAA, 0xAAAAAAAA, 0xAAAAAAAB);
    ExpectWords(Ratio(Widened(2.0, 3), Widened(3.0, 3)), 0, 0xAAAAAAAA, 0xAAAAAAAA, 0xAAAAAAAB);
    ExpectWords(Ratio(Widened(7.5, 3), Widened(2.5, 3)), 2, 0xC0000000, 0, 0);
    EXPECT_TRUE(Ratio(Widened(-1.0, 3), Widened(3.0, 3)).negative);
    EXPECT_EQ(Ratio(Widened(0.0, 3), Widened(3.0, 3)).exponent, kExponentOf0);
}

TEST(WideFractionTest, QuotientIsCutOff) {
    const WideFraction third = WideFraction{2, {kAll, kAll}} / 3;
    EXPECT_EQ(third.words[0], 0x55555555u);
    EXPECT_EQ(third.words[1], 0x55555555u);
    const WideFraction small = WideFraction{2, {0xFFFE, 0xFFFF0001}} / 0xFFFF;
    EXPECT_EQ(small.words[0], 0u);
    EXPECT_EQ(small.words[1], 0xFFFFFFFFu);
}

TEST(NearestTest, OfTwoEquallyNearIsTheEvenDouble) {
    constexpr std::uint32_t kHalf = 0x400;  // of the 53rd digit
    EXPECT_EQ(Nearest(Number(1, kFirst, kHalf, 0)), 1.0);
    EXPECT_EQ(Nearest(Number(1, kFirst, kHalf, 1)), 1.0 + 0x1p-52);
    EXPECT_EQ(Nearest(Number(1, kFirst, kHalf - 1, kAll)), 1.0);
    EXPECT_EQ(Nearest(Number(1, kFirst, 3 * kHalf, 0)), 1.0 + 0x1p-51);
    EXPECT_EQ(Nearest(-Number(1, kFirst, 3 * kHalf, 0)), -1.0 - 0x1p-51);
    EXPECT_EQ(Nearest(Number(1, kAll, kAll, kAll)), 2.0);
}

TEST(NearestTest, BelowTheNormalRangeHasFewerDigits) {
    EXPECT_EQ(Nearest(Number(-1073, kFirst, 0, 0)), kLeast);
    EXPECT_EQ(Nearest(Number(-1073, 0xBFFFFFFF, kAll, kAll)), kLeast);
    EXPECT_EQ(Nearest(Number(-1073, 0xC0000000, 0, 0)), 2 * kLeast);
    EXPECT_EQ(Nearest(Number(-1074, kFirst, 0, 0)), 0.0);
    EXPECT_EQ(Nearest(Number(-1074, kFirst, 0, 1)), kLeast);
    EXPECT_EQ(Nearest(Number(-1075, kAll, kAll, kAll)), 0.0);
    EXPECT_EQ(Nearest(Number(-1022, kAll, kAll, kAll)), 0x1p-1022);
}

TEST(NearestTest, AboveTheLargestDoubleIsInfinite) {
    EXPECT_EQ(Nearest(Number(1024, kAll, 0xFFFFF800, 0)), kLargest);
    EXPECT_EQ(Nearest(Number(1024, kAll, 0xFFFFFBFF, kAll)), kLargest);
    EXPECT_EQ(Nearest(Number(1024, kAll, 0xFFFFFC00, 0)), kInfinity);
    EXPECT_EQ(Nearest(-Number(1025, kFirst, 0, 0)), -kInfinity);
    EXPECT_EQ(Nearest(Number(1025, kAll, 0, 0)), kInfinity);
}

}  // namespace
