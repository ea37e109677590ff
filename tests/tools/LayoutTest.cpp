// SPDX-License-Identifier: MIT
//
// The look of sections, facts and tables.

#include <gtest/gtest.h>

#include "tools/base/Layout.h"
#include "tools/base/Terminal.h"

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

class NarrowLayoutTest : public testing::Test {
protected:
    ~NarrowLayoutTest() override { UseLook({}); }
};

TEST_F(NarrowLayoutTest, ATableThatIsTooWideGoesOnInFurtherLines) {
    UseLook({.width = 40});
    EXPECT_EQ(TableBlock({{"No.", kRight}, {"Name"}, {"Status"}},
                         {{"1", "Short", "one thing; another thing; a third"}, {"2", "B", "ok"}}),
              "  No.  Name   Status\n"
              "    1  Short  one thing; another thing;\n"
              "              a third\n"
              "    2  B      ok\n");
}

TEST_F(NarrowLayoutTest, ATableThatIsFarTooWideShowsEachRowInLinesOfItsOwn) {
    UseLook({.width = 24});
    EXPECT_EQ(TableBlock({{"Sensor"}, {"Reading", kRight}, {"State"}},
                         {{"CPU Temp", "54 degree C", "within limits"}, {"Fan", "", "stopped"}}),
              "  Sensor   CPU Temp\n"
              "  Reading  54 degree C\n"
              "  State    within limits\n"
              "\n"
              "  Sensor   Fan\n"
              "  Reading  -\n"
              "  State    stopped\n");
}

TEST_F(NarrowLayoutTest, FactsAndNotesGoOnInFurtherLines) {
    UseLook({.width = 30});
    EXPECT_EQ(FactBlock({{"Product", "A server with a long name"}}),
              "  Product  A server with a\n"
              "           long name\n");
    EXPECT_EQ(NoteBlock("A note that is longer than a line is."),
              "  A note that is longer than a\n"
              "  line is.\n");
}

TEST_F(NarrowLayoutTest, NoWidthIsTooSmall) {
    for (std::size_t width = 1; width < 8; ++width) {
        UseLook({.width = width});
        EXPECT_FALSE(TableBlock({{"Name"}, {"Type"}}, {{"a", "b"}}).empty());
        EXPECT_FALSE(FactBlock({{"Name", "Type"}}).empty());
        EXPECT_FALSE(NoteBlock("note").empty());
    }
}

TEST_F(NarrowLayoutTest, TonesAreColorsOnlyWhereTheLookHasThem) {
    const std::vector<Row> rows{{"1", Cell("OK", Tone::kGood)}, {"2", Cell("BAD", Tone::kBad)}};
    EXPECT_EQ(TableBlock({{"No."}, {"State"}}, rows),
              "  No.  State\n"
              "  1    OK\n"
              "  2    BAD\n");
    EXPECT_EQ(Section({"All", Tone::kWarning}, {}), "All\n---\n");
    UseLook({.isColored = true});
    EXPECT_EQ(TableBlock({{"No."}, {"State"}}, rows),
              "  No.  State\n"
              "  1    \x1B[32mOK\x1B[0m\n"
              "  2    \x1B[1;31mBAD\x1B[0m\n");
    EXPECT_EQ(Section({"All", Tone::kWarning}, {}), "\x1B[33mAll\x1B[0m\n---\n");
    EXPECT_EQ(TableBlock({{"State", kRight}, {"No."}}, {{Cell("OK", Tone::kGood), "1"}}),
              "  State  No.\n"
              "     \x1B[32mOK\x1B[0m  1\n");
}

}  // namespace
}  // namespace tool
