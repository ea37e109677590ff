// SPDX-License-Identifier: MIT
//
// Powers and logarithms of random arguments are the nearest doubles. scripts/compare-powers.sh
// compares millions.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Comparison.h"
#include "Expected.h"

namespace {

using ::testing::IsEmpty;

constexpr int kCount = 200000;
constexpr std::uint64_t kSeed = 1;

TEST(RandomArgumentsTest, GiveTheNearestPowers) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    EXPECT_THAT(ComparePowers(kCount, kSeed), IsEmpty());
}

TEST(RandomArgumentsTest, GiveTheNearestNaturalLogarithms) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    EXPECT_THAT(CompareNaturalLogarithms(kCount, kSeed), IsEmpty());
}

TEST(RandomArgumentsTest, GiveTheNearestDecimalLogarithms) {
    if (!HasWideArithmetic()) GTEST_SKIP() << kNoWideArithmetic;
    EXPECT_THAT(CompareLogarithms10(kCount, kSeed), IsEmpty());
}

}  // namespace
