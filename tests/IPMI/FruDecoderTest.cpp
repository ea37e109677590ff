// SPDX-License-Identifier: MIT
//
// The decoders of the inventory's field encodings.

#include <gtest/gtest.h>

#include <string>

#include "simulator/SimulatedServer.h"
#include "support/OpenIpmi.h"

namespace {

class FruDecoderTest : public ::testing::Test {
protected:
    struct Decoded {
        int result;
        std::string text;  // of a buffer full of '#'
        friend bool operator==(const Decoded&, const Decoded&) = default;
    };

    // The destination is said to have `room` bytes.
    Decoded Decode(int type, const std::string& source, int room = 12, int language = 0,
                   int sourceLength = -1) {
        std::string from = source;
        std::string to(12, '#');
        const int length = sourceLength < 0 ? static_cast<int>(source.size()) : sourceLength;
        const int result =
            fru.DecodeByte(static_cast<unsigned char>(language), static_cast<unsigned char>(type),
                           reinterpret_cast<unsigned char*>(from.data()), length, to.data(), room);
        return {result, to};
    }
    static Decoded Text(const std::string& text) {
        return {0, text + std::string(12 - text.size(), '#')};
    }

    sim::SimulatedServer server;
    FRU fru;
};

TEST_F(FruDecoderTest, BinaryIsCopiedUnchanged) {
    EXPECT_EQ(Decode(0, std::string("\x01\0\xFF", 3)), Text(std::string("\x01\0\xFF", 3)));
    EXPECT_EQ(Decode(0, "abcdef", 4), Text("abcd"));
    EXPECT_EQ(Decode(0, ""), Text(""));
}

TEST_F(FruDecoderTest, BcdPlusKeepsSmallAndLargeBytesAndDropsTheRest) {
    EXPECT_EQ(Decode(1, "\x05\x0C\x41"), Text(std::string("\x05\0\x41", 3)));
    EXPECT_EQ(Decode(1, std::string("\x00\x09\x0A\x0E\x0F\x10\x99", 7)),
              Text(std::string("\x00\x09\x00\x00\x0F\x10\x99", 7)));
    EXPECT_EQ(Decode(1, "AAAA", 2), Text("AA"));
}

TEST_F(FruDecoderTest, SixBitTextsOfThreeBytesAndMoreDecodeToNothing) {
    EXPECT_EQ(Decode(2, "abc"), Text(""));
    EXPECT_EQ(Decode(2, "abcdef"), Text(""));
}

TEST_F(FruDecoderTest, SixBitTextsOfUpToTwoBytesDecodeOneGroup) {
    EXPECT_EQ(Decode(2, ""), Text("    "));
    // b0: 0x21 -> 0x41; second: b0 alone -> 0x41; the others -> blanks.
    EXPECT_EQ(Decode(2, "\x21"), Text("AA  "));
    // Of b0 the low six bits alone, in both.
    EXPECT_EQ(Decode(2, "\xE1"), Text("AA  "));
    // b1 = 0xF3: second ((0xF3 * 4) & 0x3C) | 0x21 = 0x2D -> 'M'; third 0x0F -> '/'.
    EXPECT_EQ(Decode(2, "\x21\xF3"), Text("AM/ "));
}

TEST_F(FruDecoderTest, SixBitTextsReadNothingPastTheSource) {
    EXPECT_EQ(Decode(2, "\x21\xF3\x55", 12, 0, 1), Text("AA  "));
}

TEST_F(FruDecoderTest, SixBitTextsNeedRoomForOneMoreCharacter) {
    EXPECT_EQ(Decode(2, "abcdef", 9), Text(""));
    EXPECT_EQ(Decode(2, "abcdef", 8), (Decoded{-1, std::string(12, '#')}));
    EXPECT_EQ(Decode(2, "", 0), (Decoded{-1, std::string(12, '#')}));
    EXPECT_EQ(Decode(2, "\x21", 2), Text("AA")) << "writes no further than there is room";
}

TEST_F(FruDecoderTest, LatinIsCopied) {
    EXPECT_EQ(Decode(3, "abc"), Text("abc"));
    EXPECT_EQ(Decode(3, "abc", 2), Text("ab"));
    EXPECT_EQ(Decode(3, "abc", 12, 25), Text("abc"));
    EXPECT_EQ(Decode(3, ""), Text(""));
    EXPECT_EQ(Decode(3, "abc", -1), Text(""));
}

TEST_F(FruDecoderTest, OtherLanguagesHaveCharactersOfTwoBytes) {
    EXPECT_EQ(Decode(3, "abc", 12, 1), Text("ab"));
    EXPECT_EQ(Decode(3, "abcd", 12, 1), Text("abcd"));
    EXPECT_EQ(Decode(3, "abcd", 3, 24), Text("ab"));
    EXPECT_EQ(Decode(3, "a", 12, 26), Text(""));
}

TEST_F(FruDecoderTest, OtherEncodingsWriteNothingAndSucceed) {
    EXPECT_EQ(Decode(4, "abc"), Text(""));
    EXPECT_EQ(Decode(255, "abc"), Text(""));
}

TEST_F(FruDecoderTest, NullPointersAreRefused) {
    unsigned char source[] = "a";
    char destination[4] = {};
    for (unsigned char type = 0; type < 4; ++type) {
        EXPECT_EQ(fru.DecodeByte(0, type, nullptr, 1, destination, 4), -1);
        EXPECT_EQ(fru.DecodeByte(0, type, source, 1, nullptr, 4), -1);
    }
}

}  // namespace
