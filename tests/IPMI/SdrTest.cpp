// SPDX-License-Identifier: MIT
//
// SDR: loading a record, its fields and what is worked out of them.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <string>

#include "support/OpenIpmi.h"

namespace {

using Record = std::array<unsigned char, 64>;

// Every byte is its own offset.
Record Numbered() {
    Record record{};
    for (std::size_t i = 0; i < record.size(); ++i) record[i] = static_cast<unsigned char>(i);
    return record;
}

TEST(Sdr, ANewObjectIsTheMemoryThatItStandsIn) {
    alignas(SDR) unsigned char memory[sizeof(SDR)];
    std::memset(memory, 0xA5, sizeof memory);
    new (memory) SDR;
    EXPECT_EQ(sizeof memory, 65u);
    EXPECT_TRUE(std::all_of(std::begin(memory), std::end(memory),
                            [](volatile unsigned char& byte) { return byte == 0xA5; }));
}

TEST(Sdr, EveryAccessorReadsItsByte) {
    Record record = Numbered();
    SDR sdr(record.data());
    EXPECT_EQ(sdr.IsInitOK(), 1);
    EXPECT_EQ(sdr.GetSensorRecordType(), 3);
    EXPECT_EQ(sdr.GetSensorOwnerID(), 5);
    EXPECT_EQ(sdr.GetSensorOwnerLUN(), 6);
    EXPECT_EQ(sdr.GetSensorNumber(), 7);
    EXPECT_EQ(sdr.GetEntityID(), 8);
    EXPECT_EQ(sdr.GetEntityInstance(), 9);
    EXPECT_EQ(sdr.GetSensorType(), 12);
    EXPECT_EQ(sdr.GetEventType(), 13);
    EXPECT_EQ(sdr.GetThresholdInfo(), 0x1312);
    EXPECT_EQ(sdr.GetUnit1(), 20);
    EXPECT_EQ(sdr.GetBaseUnit(), 21);
    EXPECT_EQ(sdr.GetModifierUnit(), 22);
    EXPECT_EQ(sdr.GetLinearization(), 23);
    EXPECT_EQ(sdr.GetM(), 24);
    EXPECT_EQ(sdr.Gettolerance(), 25);
    EXPECT_EQ(sdr.GetB(), 26);
    EXPECT_EQ(sdr.Getaccuracy(), 27);
    EXPECT_EQ(sdr.GetRExp(), 29);
    EXPECT_EQ(sdr.GetSensorReadingMax(), 34);
    EXPECT_EQ(sdr.GetSensorReadingMin(), 35);
}

TEST(Sdr, TheObjectIsTheRecordByteForByte) {
    Record record = Numbered();
    SDR sdr(record.data());
    EXPECT_EQ(std::memcmp(&sdr, record.data(), record.size()), 0);
    EXPECT_EQ(sdr.header.RecordID, 0x0100);
    EXPECT_EQ(sdr.body.UperNonRecoverableThreshold, 36);
    EXPECT_EQ(sdr.body.LowerCriticalrThreshold, 40);
    EXPECT_EQ(sdr.body.OEM, 46);
}

TEST(Sdr, ANullRecordLeavesTheBytesAndEmptiesTheAccessors) {
    Record record = Numbered();
    SDR sdr(record.data());
    sdr = nullptr;
    EXPECT_EQ(sdr.IsInitOK(), 0);
    EXPECT_EQ(std::memcmp(&sdr, record.data(), record.size()), 0);
    EXPECT_EQ(sdr.GetSensorRecordType(), 0xFF);
    EXPECT_EQ(sdr.GetSensorOwnerID(), 0xFF);
    EXPECT_EQ(sdr.GetSensorOwnerLUN(), 0xFF);
    EXPECT_EQ(sdr.GetSensorNumber(), 0xFF);
    EXPECT_EQ(sdr.GetSensorType(), 0xFF);
    EXPECT_EQ(sdr.GetEventType(), 0xFF);
    EXPECT_EQ(sdr.GetEntityID(), 0xFF);
    EXPECT_EQ(sdr.GetEntityInstance(), 0xFF);
    EXPECT_EQ(sdr.GetThresholdInfo(), 0xFFFF);
    EXPECT_EQ(sdr.GetUnit1(), 0xFF);
    EXPECT_EQ(sdr.GetBaseUnit(), 0xFF);
    EXPECT_EQ(sdr.GetModifierUnit(), 0xFF);
    EXPECT_EQ(sdr.GetLinearization(), 0xFF);
    EXPECT_EQ(sdr.GetM(), 0xFF);
    EXPECT_EQ(sdr.GetB(), 0xFF);
    EXPECT_EQ(sdr.GetRExp(), 0xFF);
    EXPECT_EQ(sdr.Gettolerance(), 0xFF);
    EXPECT_EQ(sdr.Getaccuracy(), 0xFF);
    EXPECT_EQ(sdr.GetSensorReadingMax(), 0xFF);
    EXPECT_EQ(sdr.GetSensorReadingMin(), 0xFF);
    EXPECT_EQ(sdr.GetValueM(), -1);
    EXPECT_EQ(sdr.GetValueB(), -1);
    EXPECT_EQ(sdr.GetBExpValue(), -1);
    EXPECT_EQ(sdr.GetRExpValue(), -1);
    EXPECT_EQ(sdr.IsAnalog(), 1) << "reads the byte, which is still there";
    char name[16] = {};
    EXPECT_EQ(sdr.GetIDstring(name), 0);
    EXPECT_STREQ(name, "0123456789:;<=>") << "bytes 48 to 62, which are still there";
}

TEST(Sdr, AnAssignedRecordFillsAnEmptyObject) {
    Record record = Numbered();
    SDR sdr(record.data());
    sdr = nullptr;
    record[7] = 0x42;
    sdr = record.data();
    EXPECT_EQ(sdr.IsInitOK(), 1);
    EXPECT_EQ(sdr.GetSensorNumber(), 0x42);
}

TEST(Sdr, OnlyFormatThreeHasNoAnalogReading) {
    Record record{};
    for (const int unit1 : {0x00, 0x3F, 0x40, 0x80, 0xBF}) {
        record[20] = static_cast<unsigned char>(unit1);
        EXPECT_EQ(SDR(record.data()).IsAnalog(), 1) << unit1;
    }
    for (const int unit1 : {0xC0, 0xFF}) {
        record[20] = static_cast<unsigned char>(unit1);
        EXPECT_EQ(SDR(record.data()).IsAnalog(), 0) << unit1;
    }
}

struct Factor {
    int low, high, value;
};

class TenBitFactor : public ::testing::TestWithParam<Factor> {};

TEST_P(TenBitFactor, IsReadInTwoHalves) {
    const Factor& factor = GetParam();
    Record record{};
    record[24] = record[26] = static_cast<unsigned char>(factor.low);
    record[25] = record[27] = static_cast<unsigned char>(factor.high);
    SDR sdr(record.data());
    EXPECT_EQ(sdr.GetValueM(), factor.value);
    EXPECT_EQ(sdr.GetValueB(), factor.value);
}

INSTANTIATE_TEST_SUITE_P(Sdr, TenBitFactor,
                         ::testing::Values(Factor{0x00, 0x00, 0}, Factor{0x7F, 0x3F, 127},
                                           Factor{0xFF, 0x40, 511}, Factor{0x10, 0x40, 272},
                                           Factor{0x01, 0xFF, -255}, Factor{0xFF, 0xFF, -1},
                                           Factor{0x00, 0xC0, -256}, Factor{0x01, 0xC0, -511},
                                           Factor{0x00, 0xC1, 0}, Factor{0x00, 0xFF, 0},
                                           Factor{0x00, 0x80, -512}, Factor{0x00, 0x81, -256},
                                           Factor{0x00, 0xBF, -256}, Factor{0xFF, 0x80, -513}));

struct Exponents {
    int byte, r, b;
};

class Exponent : public ::testing::TestWithParam<Exponents> {};

TEST_P(Exponent, HasFourSignedBits) {
    Record record{};
    record[29] = static_cast<unsigned char>(GetParam().byte);
    SDR sdr(record.data());
    EXPECT_EQ(sdr.GetRExpValue(), GetParam().r);
    EXPECT_EQ(sdr.GetBExpValue(), GetParam().b);
}

INSTANTIATE_TEST_SUITE_P(Sdr, Exponent,
                         ::testing::Values(Exponents{0x00, 0, 0}, Exponents{0xE9, -2, -7},
                                           Exponents{0x17, 1, 7}, Exponents{0x88, -8, -8},
                                           Exponents{0x70, 7, 0}, Exponents{0x0F, 0, -1},
                                           Exponents{0xF0, -1, 0}));

class IdString : public ::testing::Test {
protected:
    // The name as the getter leaves it in a buffer full of '#'.
    std::string Get(int typeLength) {
        const char* const name = "abcdefghijklmnop";
        std::copy(name, name + 16, record.begin() + 48);
        record[47] = static_cast<unsigned char>(typeLength);
        SDR sdr(record.data());
        std::string text(20, '#');
        EXPECT_EQ(sdr.GetIDstring(text.data()), 0);
        return text;
    }
    Record record{};
};

TEST_F(IdString, AShortOneIsCopiedAndTerminatedAtFifteen) {
    EXPECT_EQ(Get(0xC4), std::string("abcd###########\0####", 20));
}

TEST_F(IdString, FifteenCharactersFill) {
    EXPECT_EQ(Get(0xCF), std::string("abcdefghijklmno\0####", 20));
}

TEST_F(IdString, ALengthOfTwentyCopiesFifteenCharacters) {
    EXPECT_EQ(Get(0xD4), std::string("abcdefghijklmno\0####", 20));
}

TEST_F(IdString, AnEmptyOneWritesTheTerminatorOnly) {
    EXPECT_EQ(Get(0xC0), std::string("###############\0####", 20));
}

TEST_F(IdString, ANullPointerIsRefused) {
    EXPECT_EQ(SDR(record.data()).GetIDstring(nullptr), -1);
}

TEST_F(IdString, ItsOwnLengthReadsZeroForEveryByte) {
    for (int byte = 0; byte < 256; ++byte) {
        record[47] = static_cast<unsigned char>(byte);
        EXPECT_EQ(SDR(record.data()).GetIDstringLen(), 0) << byte;
    }
}

}  // namespace
