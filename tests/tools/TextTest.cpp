// SPDX-License-Identifier: MIT
//
// Texts as firmware leaves them: not NUL-terminated, cut, with control characters and stray bytes.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "InformationRecords.h"
#include "tools/base/Text.h"

namespace tool {
namespace {

TEST(FieldTextTest, EndsAtTheTerminatingNul) {
    const char field[8] = {'A', 'B', '\0', 'C'};
    EXPECT_EQ(FieldText(field), "AB");
}

TEST(FieldTextTest, OfAFullFieldEndsWithTheField) {
    CACHE cache{};
    for (char& letter : cache.MaxSize) letter = 'x';
    cache.InstalledSize[0] = 'y';
    EXPECT_EQ(FieldText(cache.MaxSize), std::string(16, 'x'));
}

TEST(TextWithinTest, RunsOnIntoTheNextFieldUpToItsEnd) {
    SYS_POWER supply{};
    std::memset(supply.status, 'a', sizeof supply.status);
    std::memset(supply.BiosEnable, 'b', 7);
    EXPECT_EQ(TextWithin(supply, offsetof(SYS_POWER, status), sizeof supply),
              std::string(16, 'a') + std::string(7, 'b'));
    supply.BiosEnable[7] = 'c';
    EXPECT_EQ(TextWithin(supply, offsetof(SYS_POWER, status), sizeof supply),
              std::string(16, 'a') + std::string(7, 'b') + "c");
}

TEST(PrintableTest, LeavesAsciiAndLatinLettersAlone) {
    EXPECT_EQ(Printable("Xeon(R) ~ \\"), "Xeon(R) ~ \\");
    EXPECT_EQ(Printable("Xeon® Müller – ™"), "Xeon® Müller – ™");
}

TEST(PrintableTest, DropsSurroundingBlanksOnly) {
    EXPECT_EQ(Printable("  SDRAM  DDR "), "SDRAM  DDR");
    EXPECT_EQ(Printable("   "), "");
    EXPECT_EQ(Printable(""), "");
}

TEST(PrintableTest, EscapesControlCharacters) {
    EXPECT_EQ(Printable("\x1B[2J\n\t\x7F"), "\\x1B[2J\\x0A\\x09\\x7F");
    EXPECT_EQ(Printable("\xC2\x9B"), "\\xC2\\x9B") << "the control sequence introducer of Latin-1";
}

TEST(PrintableTest, EscapesCharactersThatTurnOrJoinTheTextOrAreWide) {
    EXPECT_EQ(Printable("\u202E"), "\\xE2\\x80\\xAE") << "right-to-left override";
    EXPECT_EQ(Printable("a\u0301"), "a\\xCC\\x81") << "combining accent";
    EXPECT_EQ(Printable("\u96FB"), "\\xE9\\x9B\\xBB") << "two columns wide";
    EXPECT_EQ(Printable("\u00AD"), "\\xC2\\xAD") << "soft hyphen";
}

TEST(PrintableTest, EscapesBytesThatAreNotUtf8) {
    EXPECT_EQ(Printable("M\xFCller"), "M\\xFCller") << "Latin-1";
    EXPECT_EQ(Printable("cut \xC3"), "cut \\xC3");
    EXPECT_EQ(Printable("\x80"), "\\x80");
    EXPECT_EQ(Printable("\xC1\x81"), "\\xC1\\x81") << "overlong form of A";
    EXPECT_EQ(Printable("\xE2\x84 x"), "\\xE2\\x84 x");
}

TEST(ColumnsTest, CountsCharactersNotBytes) {
    EXPECT_EQ(Columns("Xeon®"), 5U);
    EXPECT_EQ(Columns("\\xFC"), 4U);
    EXPECT_EQ(Columns(""), 0U);
}

TEST(Utf8Test, LeavesValidTextAlone) {
    EXPECT_EQ(Utf8(" Xeon® \u96FB \U0001F5A5\x1B "), " Xeon® \u96FB \U0001F5A5\x1B ");
}

TEST(Utf8Test, TakesAByteOutsideASequenceForLatin1) {
    EXPECT_EQ(Utf8("M\xFCller"), "Müller");
    EXPECT_EQ(Utf8("cut \xC3"), "cut Ã");
    EXPECT_EQ(Utf8("\x80\xFF"), "\u0080ÿ");
}

TEST(Utf8Test, RefusesWhatTheStandardRefuses) {
    EXPECT_EQ(Utf8("\xC0\xAF"), "À¯") << "overlong";
    EXPECT_EQ(Utf8("\xED\xA0\x80"), "í\u00A0\u0080") << "surrogate";
    EXPECT_EQ(Utf8("\xF4\x90\x80\x80"), "ô\u0090\u0080\u0080") << "above U+10FFFF";
    EXPECT_EQ(Utf8("\xF4\x8F\xBF\xBF"), "\U0010FFFF") << "the last character";
}

}  // namespace
}  // namespace tool
