// SPDX-License-Identifier: MIT
//
// Reading a processor's counters: the name that is looked for, and how many numbers count. The
// decoder is not exported, so it is compiled into this program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "load/CpuTimeText.h"

namespace {

using talvane::kCpuCounters;
using talvane::ScanCpuTimes;
using ::testing::ElementsAre;

class CpuTimesTest : public ::testing::Test {
protected:
    int Scan(const char* text, int number) { return ScanCpuTimes(text, number, times); }

    long times[kCpuCounters] = {-1, -2, -3, -4};
};

TEST_F(CpuTimesTest, FourCountersAreRead) {
    EXPECT_EQ(Scan("cpu  9 9 9 9\ncpu0 1 2 3 4\ncpu1 5 6 7 8\n", 1), 4);
    EXPECT_THAT(times, ElementsAre(5, 6, 7, 8));
}

TEST_F(CpuTimesTest, CountersAfterTheFourthAreNotRead) {
    EXPECT_EQ(Scan("cpu0 1 2 3 4 5 6 7 0 0 0\n", 0), 4);
    EXPECT_THAT(times, ElementsAre(1, 2, 3, 4));
}

TEST_F(CpuTimesTest, MissingProcessorLeavesTheCounters) {
    EXPECT_EQ(Scan("cpu  1 2 3 4\ncpu0 1 2 3 4\n", 1), -1);
    EXPECT_EQ(Scan("", 0), -1);
    EXPECT_THAT(times, ElementsAre(-1, -2, -3, -4));
}

TEST_F(CpuTimesTest, CountersThatDoNotComeStay) {
    EXPECT_EQ(Scan("cpu0 1 2", 0), 2);
    EXPECT_THAT(times, ElementsAre(1, 2, -3, -4));
    EXPECT_EQ(Scan("cpu0 7 8 x", 0), 2);
    EXPECT_EQ(Scan("cpu0 9", 0), 1);
    EXPECT_THAT(times, ElementsAre(9, 8, -3, -4));
}

TEST_F(CpuTimesTest, LineWithoutNumbersHasNone) {
    EXPECT_LT(Scan("cpu0", 0), 1);
    EXPECT_LT(Scan("cpu0 x", 0), 1);
}

TEST_F(CpuTimesTest, FirstPlaceOfTheNameCounts) {
    EXPECT_EQ(Scan("intr cpu0 5 6 7 8\ncpu0 1 2 3 4\n", 0), 4);
    EXPECT_THAT(times, ElementsAre(5, 6, 7, 8));
}

TEST_F(CpuTimesTest, LongerNameIsTakenForAShorterOne) {
    EXPECT_EQ(Scan("cpu0 1 2 3 4\ncpu12 5 6 7\n", 1), 4);
    EXPECT_THAT(times, ElementsAre(2, 5, 6, 7));
}

TEST_F(CpuTimesTest, CountersOfTheFullRangeKeepTheirBits) {
    EXPECT_EQ(Scan("cpu0 4294967295 2147483648 2147483647 0\n", 0), 4);
    EXPECT_THAT(times, ElementsAre(-1, -2147483647 - 1, 2147483647, 0));
}

// Every byte of a text in turn has every value. The texts end where their memory ends.
TEST(DamagedCpuTimesTest, OnlyTheCountersThatCameAreWritten) {
    const std::string text = "cpu  9 9 9 9\ncpu0 1 2 3 4\ncpu1 5 6 7 8\n";
    for (std::size_t at = 0; at < text.size(); ++at)
        for (int value = 0; value < 0x100; ++value) {
            const auto damaged = std::make_unique<char[]>(text.size() + 1);
            std::memcpy(damaged.get(), text.c_str(), text.size() + 1);
            damaged[at] = static_cast<char>(value);
            struct {
                long before = -9;
                long times[kCpuCounters] = {-1, -2, -3, -4};
                long after = -9;
            } box;
            const int count = ScanCpuTimes(damaged.get(), 1, box.times);
            ASSERT_TRUE(count >= -1 && count <= kCpuCounters) << at << " " << value;
            for (int i = std::max(count, 0); i < kCpuCounters; ++i)
                ASSERT_EQ(box.times[i], -1 - i) << at << " " << value;
            ASSERT_EQ(box.before, -9) << at << " " << value;
            ASSERT_EQ(box.after, -9) << at << " " << value;
        }
}

}  // namespace
