// SPDX-License-Identifier: MIT
//
// Reading a processor's counters: the name that is looked for, and how many numbers count. The
// decoder is not exported, so it is compiled into this program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CpuTimeText.h"

namespace {

using ::testing::ElementsAre;

class CpuTimes : public ::testing::Test {
protected:
    int Scan(const char* text, int number) { return ScanCpuTimes(text, number, times); }

    long times[kCpuCounters] = {-1, -2, -3, -4};
};

TEST_F(CpuTimes, FourCountersAreRead) {
    EXPECT_EQ(Scan("cpu  9 9 9 9\ncpu0 1 2 3 4\ncpu1 5 6 7 8\n", 1), 4);
    EXPECT_THAT(times, ElementsAre(5, 6, 7, 8));
}

TEST_F(CpuTimes, CountersBehindTheFourthAreNotRead) {
    EXPECT_EQ(Scan("cpu0 1 2 3 4 5 6 7 0 0 0\n", 0), 4);
    EXPECT_THAT(times, ElementsAre(1, 2, 3, 4));
}

TEST_F(CpuTimes, MissingProcessorLeavesTheCounters) {
    EXPECT_EQ(Scan("cpu  1 2 3 4\ncpu0 1 2 3 4\n", 1), -1);
    EXPECT_EQ(Scan("", 0), -1);
    EXPECT_THAT(times, ElementsAre(-1, -2, -3, -4));
}

TEST_F(CpuTimes, CountersThatDoNotComeStay) {
    EXPECT_EQ(Scan("cpu0 1 2", 0), 2);
    EXPECT_THAT(times, ElementsAre(1, 2, -3, -4));
    EXPECT_EQ(Scan("cpu0 7 8 x", 0), 2);
    EXPECT_EQ(Scan("cpu0 9", 0), 1);
    EXPECT_THAT(times, ElementsAre(9, 8, -3, -4));
}

TEST_F(CpuTimes, LineWithoutNumbersHasNone) {
    EXPECT_LT(Scan("cpu0", 0), 1);
    EXPECT_LT(Scan("cpu0 x", 0), 1);
}

TEST_F(CpuTimes, FirstPlaceOfTheNameCounts) {
    EXPECT_EQ(Scan("intr cpu0 5 6 7 8\ncpu0 1 2 3 4\n", 0), 4);
    EXPECT_THAT(times, ElementsAre(5, 6, 7, 8));
}

TEST_F(CpuTimes, LongerNameIsTakenForAShorterOne) {
    EXPECT_EQ(Scan("cpu0 1 2 3 4\ncpu12 5 6 7\n", 1), 4);
    EXPECT_THAT(times, ElementsAre(2, 5, 6, 7));
}

TEST_F(CpuTimes, CountersOfTheFullRangeKeepTheirBits) {
    EXPECT_EQ(Scan("cpu0 4294967295 2147483648 2147483647 0\n", 0), 4);
    EXPECT_THAT(times, ElementsAre(-1, -2147483647 - 1, 2147483647, 0));
}

}  // namespace
