// SPDX-License-Identifier: MIT
//
// Texts and columns that are made to fit a width.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/base/Wrapping.h"

namespace tool {
namespace {

using testing::ElementsAre;

TEST(WrappedLinesTest, ATextThatFitsIsOneLine) {
    EXPECT_THAT(WrappedLines("four", 4), ElementsAre("four"));
    EXPECT_THAT(WrappedLines("", 4), ElementsAre(""));
}

TEST(WrappedLinesTest, LinesEndAtBlanks) {
    EXPECT_THAT(WrappedLines("one two three", 7), ElementsAre("one two", "three"));
    EXPECT_THAT(WrappedLines("one two three", 8), ElementsAre("one two", "three"));
    EXPECT_THAT(WrappedLines("one two three", 6), ElementsAre("one", "two", "three"));
    EXPECT_THAT(WrappedLines("one   two", 4), ElementsAre("one", "two"));
}

TEST(WrappedLinesTest, AWordThatIsLongerThanALineIsCut) {
    EXPECT_THAT(WrappedLines("abcdefgh", 3), ElementsAre("abc", "def", "gh"));
    EXPECT_THAT(WrappedLines("a bcdefgh", 3), ElementsAre("a", "bcd", "efg", "h"));
    EXPECT_THAT(WrappedLines(" abcdef", 3), ElementsAre("ab", "cde", "f"));
}

TEST(WrappedLinesTest, ACharacterOfSeveralBytesIsNotCut) {
    EXPECT_THAT(WrappedLines("ééé", 2), ElementsAre("éé", "é"));
}

TEST(LongestWordTest, CountsColumnsBetweenBlanksUpToTwentyFour) {
    EXPECT_EQ(LongestWord(""), 0U);
    EXPECT_EQ(LongestWord("one three two"), 5U);
    EXPECT_EQ(LongestWord("éé a"), 2U);
    EXPECT_EQ(LongestWord("a bcdefghijklmnopqrstuvwxyz"), 24U);
}

std::vector<std::size_t> Fitted(std::vector<ColumnWidth> columns, std::size_t limit, bool fits) {
    EXPECT_EQ(FitColumns(columns, limit), fits);
    std::vector<std::size_t> widths;
    for (const ColumnWidth& column : columns) widths.push_back(column.width);
    return widths;
}

TEST(FitColumnsTest, ColumnsThatFitStayAsTheyAre) {
    EXPECT_THAT(Fitted({{40, 10}, {20, 20}}, 60, true), ElementsAre(40, 20));
}

TEST(FitColumnsTest, TheWidestColumnsBecomeNarrower) {
    EXPECT_THAT(Fitted({{40, 10}, {20, 10}, {12, 10}}, 59, true), ElementsAre(27, 20, 12));
    EXPECT_THAT(Fitted({{40, 10}, {20, 10}, {12, 10}}, 42, true), ElementsAre(15, 15, 12));
}

TEST(FitColumnsTest, NoColumnBecomesNarrowerThanItCanBe) {
    EXPECT_THAT(Fitted({{40, 40}, {20, 10}}, 50, true), ElementsAre(40, 10));
    EXPECT_THAT(Fitted({{40, 40}, {20, 10}}, 49, false), ElementsAre(40, 10));
    EXPECT_THAT(Fitted({{8, 8}}, 7, false), ElementsAre(8));
}

}  // namespace
}  // namespace tool
