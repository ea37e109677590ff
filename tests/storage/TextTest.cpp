// SPDX-License-Identifier: MIT
//
// The two text functions of the storage inventory.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "storage/GetAllPartitionInfo.h"
#include "storage/lltostr.h"
#include "support/Answer.h"

namespace {

// Everything that lltostr writes, terminator included.
std::string Written(unsigned long long value) {
    return AskWith(Buffer::kMarked, [&](char* out) { return lltostr(out, value), 0; }).written;
}

std::string Text(unsigned long long value) {
    char text[32];
    lltostr(text, value);
    return text;
}

std::string Stripped(const char* text) {
    std::string buffer = text;
    stripret(buffer.data());
    return buffer.c_str();
}

TEST(NumberTextTest, ZeroIsAnEmptyText) {
    EXPECT_EQ(Written(0), std::string(1, '\0'));
}

TEST(NumberTextTest, NumbersAreDecimalWithoutLeadingZeros) {
    for (const unsigned long long value :
         {1ULL, 9ULL, 10ULL, 99ULL, 100ULL, 101ULL, 512ULL, 4294967296ULL, 40020664320ULL,
          99999999999ULL, 100000000000ULL, 123456789012ULL, 999999999999ULL})
        EXPECT_EQ(Text(value), std::to_string(value));
}

TEST(NumberTextTest, TextIsTerminatedAndNoMoreIsWritten) {
    EXPECT_EQ(Written(42), std::string("42\0", 3));
    EXPECT_EQ(Written(999999999999ULL), std::string("999999999999\0", 13));
}

TEST(NumberTextTest, EveryPowerOfTenBelowTheLimitIsADigitAndZeros) {
    unsigned long long power = 1;
    for (std::size_t digits = 1; digits <= 12; ++digits, power *= 10)
        EXPECT_EQ(Text(power), "1" + std::string(digits - 1, '0'));
}

TEST(NumberTextTest, FirstCharacterFromATrillionOnIsBeyondTheDigits) {
    EXPECT_EQ(Text(1000000000000ULL), ":00000000000");
    EXPECT_EQ(Text(1234567890123ULL), "<34567890123");
    EXPECT_EQ(Text(2199023255040ULL), "E99023255040");  // 2 TiB less a sector
}

TEST(NumberTextTest, FirstQuotientIsNarrowedToACharacter) {
    // 20800000000000 is 208 times 10^11, and '0' + 208 is 256.
    EXPECT_EQ(Written(20800000000001ULL), std::string("\0", 1) + "00000000001" + '\0');
    EXPECT_EQ(Written(~0ULL),
              std::string(1, static_cast<char>('0' + 184467440ULL)) + "73709551615" + '\0');
}

TEST(LineEndTest, LineEndIsCutOff) {
    EXPECT_EQ(Stripped("disk\n"), "disk");
    EXPECT_EQ(Stripped("\n"), "");
}

TEST(LineEndTest, OnlyOneLineEndIsCutOffAndOnlyAtTheEnd) {
    EXPECT_EQ(Stripped("disk\n\n"), "disk\n");
    EXPECT_EQ(Stripped("a\nb"), "a\nb");
    EXPECT_EQ(Stripped("disk\r"), "disk\r");
    EXPECT_EQ(Stripped("disk"), "disk");
}

TEST(LineEndTest, EmptyTextStaysAndWhatLiesBeforeItIsNotLookedAt) {
    char texts[] = "\n\0";
    stripret(texts + 1);
    EXPECT_EQ(texts[0], '\n');
    EXPECT_EQ(texts[1], '\0');
}

TEST(FourBytesTest, FourBytesAreALittleEndianNumber) {
    unsigned char bytes[] = {0x78, 0x56, 0x34, 0xF2, 0xFF};
    unsigned long long value = ~0ULL;
    valueofarray(bytes, &value);
    EXPECT_EQ(value, 0xF2345678u);
}

}  // namespace
