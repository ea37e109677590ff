// SPDX-License-Identifier: MIT
//
// The look of sections, facts and tables.

#include <gtest/gtest.h>

#include "tools/base/Layout.h"

namespace tool {
namespace {

constexpr auto kRight = Column::Align::kRight;

TEST(FactBlockTest, PutsValuesBelowEachOther) {
    EXPECT_EQ(FactBlock({{"Product", "PX-1"}, {"Serial number", "42"}}),
              "  Product        PX-1\n"
              "  Serial number  42\n");
}

TEST(FactBlockTest, ShowsAMissingValueAsADash) {
    EXPECT_EQ(FactBlock({{"Version", ""}, {"Product", "  "}}),
              "  Version  -\n"
              "  Product  -\n");
}

TEST(TableBlockTest, AlignsColumnsByTheirWidestCell) {
    EXPECT_EQ(TableBlock({{"No.", kRight}, {"Name"}, {"Size", kRight}},
                         {{"1", "A long name", "512 MB"}, {"10", "B", "1024 MB"}}),
              "  No.  Name            Size\n"
              "    1  A long name   512 MB\n"
              "   10  B            1024 MB\n");
}

TEST(TableBlockTest, EndsNoLineInABlank) {
    EXPECT_EQ(TableBlock({{"Name"}, {"Manufacturer"}}, {{"A", "X"}}),
              "  Name  Manufacturer\n"
              "  A     X\n");
}

TEST(TableBlockTest, WithoutRowsSaysNone) {
    EXPECT_EQ(TableBlock({{"Name"}}, {}), "  none\n");
}

TEST(TableBlockTest, AlignsByColumnsWhereACharacterTakesSeveralBytes) {
    EXPECT_EQ(TableBlock({{"Name"}, {"Type"}}, {{"é®", "x"}, {"\xFF", "y"}}),
              "  Name  Type\n"
              "  é®    x\n"
              "  \\xFF  y\n");
}

TEST(TableBlockTest, KeepsALineBreakInsideTheCell) {
    EXPECT_EQ(TableBlock({{"Name"}}, {{"a\nb"}}),
              "  Name\n"
              "  a\\x0Ab\n");
}

TEST(SectionTest, UnderlinesItsTitleAndSeparatesBlocks) {
    EXPECT_EQ(Section("Fans", {NoteBlock("one"), NoteBlock("two")}),
              "Fans\n"
              "----\n"
              "  one\n"
              "\n"
              "  two\n");
}

TEST(PageTest, SeparatesSectionsByABlankLine) {
    EXPECT_EQ(Page({"a\n", "b\n", "c\n"}), "a\n\nb\n\nc\n");
    EXPECT_EQ(Page({}), "");
}

}  // namespace
}  // namespace tool
