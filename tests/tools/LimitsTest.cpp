// SPDX-License-Identifier: MIT
//
// The six thresholds: their order, which of them a reading has reached, how they are shown.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "InformationRecords.h"
#include "tools/library/Limits.h"

namespace tool {
namespace {

constexpr std::nullopt_t kNoLimit = std::nullopt;

const Limits kAll = {30.0, 20.0, 10.0, 100.0, 110.0, 120.0};

TEST(LimitValuesTest, StandInTheOrderOfTheMasks) {
    SensorThresholdInfo info{};
    info.LowerNonCriticalThreshold = 30;
    info.LowerCriticalThreshold = 20;
    info.LowerNonRecoverThreshold = 10;
    info.UpperNonCriticalThresholdValue = 100;
    info.UpperCriticalThresholdValue = 110;
    info.UpperNonRecoverThresholdValue = 120;
    EXPECT_EQ(AllOf(LimitValues<double>(info)), kAll);
}

TEST(OnlyInTest, KeepsOnlyTheLimitsInTheMask) {
    const Limits limits = OnlyIn(0x21, {30, 20, 10, 100, 110, 120});
    EXPECT_EQ(limits, (Limits{30.0, kNoLimit, kNoLimit, kNoLimit, kNoLimit, 120.0}));
}

TEST(ReachedLimitTest, IsTheOutermostAndIncludesTheLimitItself) {
    EXPECT_EQ(ReachedLimit(50, kAll), std::nullopt);
    EXPECT_EQ(ReachedLimit(99.9, kAll), std::nullopt);
    EXPECT_EQ(ReachedLimit(100, kAll), 3U);
    EXPECT_EQ(ReachedLimit(119, kAll), 4U);
    EXPECT_EQ(ReachedLimit(1000, kAll), 5U);
    EXPECT_EQ(ReachedLimit(30, kAll), 0U);
    EXPECT_EQ(ReachedLimit(20, kAll), 1U);
    EXPECT_EQ(ReachedLimit(-1, kAll), 2U);
    EXPECT_EQ(ReachedLimit(1000, Limits{}), std::nullopt);
}

TEST(NumberTextTest, IsAsShortAsSixDigitsAllow) {
    EXPECT_EQ(NumberText(85.0), "85");
    EXPECT_EQ(NumberText(3.465), "3.465");
    EXPECT_EQ(NumberText(12300.0), "12300");
    EXPECT_EQ(NumberText(std::nullopt), "");
}

TEST(LimitCellsTest, RunFromTheLowestToTheHighest) {
    std::vector<Column> columns;
    AddLimitColumns(columns);
    Row row;
    AddLimitCells(row, kAll);
    std::string titles;
    for (const Column& column : columns) titles += column.title + ' ';
    EXPECT_EQ(titles, "L NR L CR L NC U NC U CR U NR ");
    std::vector<std::string> texts;
    for (const Cell& cell : row) texts.push_back(cell.text);
    EXPECT_EQ(texts, (std::vector<std::string>{"10", "20", "30", "100", "110", "120"}));
}

TEST(LimitsJsonTest, HasNullForALimitThatIsNotThere) {
    EXPECT_EQ(LimitsJson({30.0, kNoLimit, 10.0, 100.0, 110.0, 120.5}).dump(),
              R"({"lowerNonRecoverable":10.0,"lowerCritical":null,"lowerNonCritical":30.0,)"
              R"("upperNonCritical":100.0,"upperCritical":110.0,"upperNonRecoverable":120.5})");
}

}  // namespace
}  // namespace tool
