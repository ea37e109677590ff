// SPDX-License-Identifier: MIT
//
// One structure with its string set, and the two text helpers beside the reader.
#include <climits>
#include <cstring>
#include <vector>

#include "support/SmBiosTest.h"

namespace {

// A structure in memory of its own, followed by two zero bytes as a table is.
class BiosDataItemTest : public ::testing::Test {
protected:
    BiosDataItem& Make(const sim::Bytes& bytes) {
        structure = bytes;
        structure.insert(structure.end(), {0, 0});
        item = std::make_unique<BiosDataItem>(structure.data());
        return *item;
    }
    BiosDataItem& MakeWithStrings(const std::vector<std::string>& strings) {
        sim::SmbiosStructure made(11, 0x1234, 5);
        for (const std::string& text : strings) made.String(text);
        return Make(made.Image());
    }

    sim::Bytes structure;
    std::unique_ptr<BiosDataItem> item;
};

TEST_F(BiosDataItemTest, HeaderIsCopied) {
    Make({0x81, 6, 0xCD, 0xAB, 1, 2, 0, 0});
    EXPECT_EQ(item->GetType(), 0x81);
    EXPECT_EQ(item->GetFormatedDataLength(), 6);
    EXPECT_EQ(item->GetHandle(), 0xABCD);
    EXPECT_EQ(item->header.type, 0x81);
    EXPECT_EQ(item->header.length, 6);
    EXPECT_EQ(item->header.handle, 0xABCD);
}

TEST_F(BiosDataItemTest, FormattedAreaIsACopyFollowedByOneZeroByte) {
    Make({4, 6, 0xCD, 0xAB, 0x11, 0x22, 'x', 0, 0});
    const unsigned char* data = item->GetFormatedData();
    ASSERT_NE(data, nullptr);
    EXPECT_NE(data, structure.data());
    const unsigned char expected[] = {4, 6, 0xCD, 0xAB, 0x11, 0x22, 0};
    EXPECT_EQ(std::memcmp(data, expected, sizeof expected), 0);
    structure[4] = 0x99;
    EXPECT_EQ(data[4], 0x11);
}

TEST_F(BiosDataItemTest, LongestFormattedAreaIsCopied) {
    sim::Bytes bytes(255, 0x5A);
    bytes[1] = 255;
    bytes.insert(bytes.end(), {0, 0});
    Make(bytes);
    EXPECT_EQ(item->GetFormatedDataLength(), 255);
    EXPECT_EQ(item->GetFormatedData()[254], 0x5A);
    EXPECT_EQ(item->GetFormatedData()[255], 0);
}

TEST_F(BiosDataItemTest, EndAddressIsTheSecondZeroByteInTheTable) {
    Make({1, 4, 0, 0, 'A', 0, 'B', 'C', 0, 0});
    EXPECT_EQ(item->GetEndAddress(), structure.data() + 9);
    EXPECT_EQ(item->EndAddress, structure.data() + 9);
    EXPECT_EQ(item->StringBufferLength, 6u);
}

TEST_F(BiosDataItemTest, StructureWithoutStringsHasATwoByteStringBuffer) {
    Make({1, 4, 0, 0, 0, 0});
    EXPECT_EQ(item->GetEndAddress(), structure.data() + 5);
    EXPECT_EQ(item->StringBufferLength, 2u);
    EXPECT_EQ(item->StringBuffer[0], 0);
    EXPECT_EQ(item->StringBuffer[1], 0);
    EXPECT_STREQ(item->GetString(1), "");
    EXPECT_STREQ(item->GetString(2), "");
    EXPECT_EQ(item->GetString(4), nullptr);
}

TEST_F(BiosDataItemTest, ZeroesAtTheEndOfTheFormattedAreaDoNotEndTheStructure) {
    Make({1, 6, 0, 0, 0, 0, 'A', 0, 0});
    EXPECT_EQ(item->GetEndAddress(), structure.data() + 8);
    EXPECT_STREQ(item->GetString(1), "A");
}

TEST_F(BiosDataItemTest, SingleZeroAtTheEndOfTheFormattedAreaDoesNotPairWithTheStrings) {
    Make({1, 5, 0, 0, 0, 0, 'A', 0, 0});  // a zero where the first string starts
    EXPECT_EQ(item->GetEndAddress(), structure.data() + 8);
    EXPECT_STREQ(item->GetString(1), "");
    EXPECT_STREQ(item->GetString(2), "A");
}

TEST_F(BiosDataItemTest, MissingDoubleZeroIsReplacedByTheZeroesAfterTheTable) {
    Make({1, 4, 0, 0, 'A', 'B'});
    EXPECT_EQ(item->GetEndAddress(), structure.data() + 7);
    EXPECT_STREQ(item->GetString(1), "AB");
}

TEST_F(BiosDataItemTest, StringsAreCopies) {
    MakeWithStrings({"Alpha", "Beta"});
    EXPECT_STREQ(item->GetString(1), "Alpha");
    EXPECT_STREQ(item->GetString(2), "Beta");
    structure.assign(structure.size(), 'x');
    EXPECT_STREQ(item->GetString(2), "Beta");
}

TEST_F(BiosDataItemTest, StringsAreCountedFromOneAndEndPastTheSet) {
    MakeWithStrings({"A", "B"});
    EXPECT_EQ(item->GetString(0), nullptr);
    EXPECT_STREQ(item->GetString(1), "A");
    EXPECT_STREQ(item->GetString(2), "B");
    EXPECT_STREQ(item->GetString(3), "");
    EXPECT_EQ(reinterpret_cast<unsigned char*>(item->GetString(3)), item->StringBuffer + 4);
    EXPECT_EQ(reinterpret_cast<unsigned char*>(item->GetString(4)), item->StringBuffer + 5);
    EXPECT_STREQ(item->GetString(4), "");  // just past the set, a zero byte
    EXPECT_EQ(item->GetString(5), nullptr);
    EXPECT_EQ(item->GetString(6), nullptr);
}

TEST_F(BiosDataItemTest, ByteJustPastTheSetIsZeroWhateverItsLength) {
    for (std::size_t length = 1; length < 200; ++length) {
        MakeWithStrings({std::string(length, 's')});
        EXPECT_EQ(item->StringBufferLength, length + 2);
        EXPECT_STREQ(item->GetString(2), "") << length;
        EXPECT_STREQ(item->GetString(3), "") << length;
        EXPECT_EQ(item->GetString(4), nullptr) << length;
    }
}

TEST_F(BiosDataItemTest, GetStringOfZeroAndTwentyOneGiveNull) {
    MakeWithStrings(std::vector<std::string>(25, "s"));
    EXPECT_EQ(item->GetString(0), nullptr);
    EXPECT_STREQ(item->GetString(20), "s");
    EXPECT_EQ(item->GetString(21), nullptr);
    EXPECT_EQ(item->GetString(255), nullptr);
    EXPECT_EQ(item->GetString(INT_MAX), nullptr);
}

TEST_F(BiosDataItemTest, GetStringOfANegativeIndexSkipsNothing) {
    MakeWithStrings({"first", "second"});
    for (const int index : {-1, -20, INT_MIN}) EXPECT_STREQ(item->GetString(index), "first");
}

TEST_F(BiosDataItemTest, LongStringsAreWhole) {
    const std::string text(3000, 'l');
    MakeWithStrings({"a", text, "b"});
    EXPECT_EQ(item->GetString(2), text);
    EXPECT_STREQ(item->GetString(3), "b");
}

TEST_F(BiosDataItemTest, FormattedLengthBelowTheHeaderIsTakenAsItIs) {
    Make({5, 2, 0, 0, 'x', 0, 0});
    EXPECT_EQ(item->GetFormatedDataLength(), 2);
    EXPECT_EQ(item->GetFormatedData()[0], 5);
    EXPECT_EQ(item->GetFormatedData()[1], 2);
    EXPECT_EQ(item->GetFormatedData()[2], 0);
    EXPECT_EQ(item->GetEndAddress(), structure.data() + 3);  // the handle's two zero bytes
}

TEST_F(BiosDataItemTest, FormattedLengthOfZeroStartsTheStringsAtTheType) {
    Make({'T', 0, 'h', 'h', 0, 0});
    EXPECT_EQ(item->GetHandle(), 0x6868);
    EXPECT_EQ(item->GetEndAddress(), structure.data() + 5);
    EXPECT_STREQ(item->GetString(1), "T");
    EXPECT_STREQ(item->GetString(2), "hh");
}

class TextHelpersTest : public SmBiosTest {};

TEST_F(TextHelpersTest, TrimOnATextWithAHyphenAndATrailingSpaceLeavesItUnchanged) {
    Read();
    char text[] = "AB-12 ";
    reader->trim(text);
    EXPECT_STREQ(text, "AB-12 ");
}

TEST_F(TextHelpersTest, TrimLeavesEveryCharacterUnchanged) {
    Read();
    char text[256];
    for (int i = 0; i < 255; ++i) text[i] = static_cast<char>(i + 1);
    text[255] = '\0';
    char expected[256];
    std::memcpy(expected, text, sizeof text);
    reader->trim(text);
    EXPECT_EQ(std::memcmp(text, expected, sizeof text), 0);
}

TEST_F(TextHelpersTest, TrimOfANullOrEmptyTextReturnsAtOnce) {
    Read();
    reader->trim(nullptr);
    char text[4] = {'\0', 'x', 'y', 'z'};
    reader->trim(text);
    EXPECT_EQ(std::memcmp(text, "\0xyz", 4), 0);
}

std::string Itoa(int value, int radix) {
    char buffer[32];
    std::memset(buffer, 0x7E, sizeof buffer);
    itoa(value, buffer, radix);
    EXPECT_EQ(buffer[std::strlen(buffer) + 1], 0x7E);
    return buffer;
}

TEST(ItoaTest, Of42WithRadix16Writes42) {
    EXPECT_EQ(Itoa(42, 16), "42");
}

TEST(ItoaTest, IsDecimalWhateverTheRadix) {
    for (const int radix : {-1, 0, 2, 8, 10, 16, 36}) EXPECT_EQ(Itoa(255, radix), "255");
}

TEST(ItoaTest, CoversTheWholeRange) {
    EXPECT_EQ(Itoa(0, 10), "0");
    EXPECT_EQ(Itoa(-7, 10), "-7");
    EXPECT_EQ(Itoa(INT_MAX, 10), "2147483647");
    EXPECT_EQ(Itoa(INT_MIN, 10), "-2147483648");
}

}  // namespace
