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

TEST(SdrTest, ANewObjectIsTheMemoryThatItStandsIn) {
    alignas(SDR) unsigned char memory[sizeof(SDR)];
    std::memset(memory, 0xA5, sizeof memory);
    new (memory) SDR;
    EXPECT_EQ(sizeof memory, 65u);
    EXPECT_TRUE(std::all_of(std::begin(memory), std::end(memory),
                            [](volatile unsigned char& byte) { return byte == 0xA5; }));
}

// The accessors of one byte, and where in the record their byte stands.
struct Accessor {
    const char* name;
    unsigned char (SDR::*read)();
    int offset;
};
constexpr Accessor kAccessors[] = {
    {"GetSensorRecordType", &SDR::GetSensorRecordType, 3},
    {"GetSensorOwnerID", &SDR::GetSensorOwnerID, 5},
    {"GetSensorOwnerLUN", &SDR::GetSensorOwnerLUN, 6},
    {"GetSensorNumber", &SDR::GetSensorNumber, 7},
    {"GetEntityID", &SDR::GetEntityID, 8},
    {"GetEntityInstance", &SDR::GetEntityInstance, 9},
    {"GetSensorType", &SDR::GetSensorType, 12},
    {"GetEventType", &SDR::GetEventType, 13},
    {"GetUnit1", &SDR::GetUnit1, 20},
    {"GetBaseUnit", &SDR::GetBaseUnit, 21},
    {"GetModifierUnit", &SDR::GetModifierUnit, 22},
    {"GetLinearization", &SDR::GetLinearization, 23},
    {"GetM", &SDR::GetM, 24},
    {"Gettolerance", &SDR::Gettolerance, 25},
    {"GetB", &SDR::GetB, 26},
    {"Getaccuracy", &SDR::Getaccuracy, 27},
    {"GetRExp", &SDR::GetRExp, 29},
    {"GetSensorReadingMax", &SDR::GetSensorReadingMax, 34},
    {"GetSensorReadingMin", &SDR::GetSensorReadingMin, 35},
};

TEST(SdrTest, EveryAccessorReadsItsByte) {
    Record record = Numbered();
    SDR sdr(record.data());
    EXPECT_EQ(sdr.IsInitOK(), 1);
    for (const Accessor& accessor : kAccessors)
        EXPECT_EQ((sdr.*accessor.read)(), accessor.offset) << accessor.name;
    EXPECT_EQ(sdr.GetThresholdInfo(), 0x1312);
}

TEST(SdrTest, TheObjectIsTheRecordByteForByte) {
    Record record = Numbered();
    SDR sdr(record.data());
    EXPECT_EQ(std::memcmp(&sdr, record.data(), record.size()), 0);
    EXPECT_EQ(sdr.header.RecordID, 0x0100);
    EXPECT_EQ(sdr.body.UperNonRecoverableThreshold, 36);
    EXPECT_EQ(sdr.body.LowerCriticalrThreshold, 40);
    EXPECT_EQ(sdr.body.OEM, 46);
}

TEST(SdrTest, ANullRecordLeavesTheBytesAndEmptiesTheAccessors) {
    Record record = Numbered();
    SDR sdr(record.data());
    sdr = nullptr;
    EXPECT_EQ(sdr.IsInitOK(), 0);
    EXPECT_EQ(std::memcmp(&sdr, record.data(), record.size()), 0);
    for (const Accessor& accessor : kAccessors)
        EXPECT_EQ((sdr.*accessor.read)(), 0xFF) << accessor.name;
    EXPECT_EQ(sdr.GetThresholdInfo(), 0xFFFF);
    EXPECT_EQ(sdr.GetValueM(), -1);
    EXPECT_EQ(sdr.GetValueB(), -1);
    EXPECT_EQ(sdr.GetBExpValue(), -1);
    EXPECT_EQ(sdr.GetRExpValue(), -1);
    EXPECT_EQ(sdr.IsAnalog(), 1) << "reads the byte, which is still there";
    char name[16] = {};
    EXPECT_EQ(sdr.GetIDstring(name), 0);
    EXPECT_STREQ(name, "0123456789:;<=>") << "bytes 48 to 62, which are still there";
}

TEST(SdrTest, AnAssignedRecordFillsAnEmptyObject) {
    Record record = Numbered();
    SDR sdr(record.data());
    sdr = nullptr;
    record[7] = 0x42;
    sdr = record.data();
    EXPECT_EQ(sdr.IsInitOK(), 1);
    EXPECT_EQ(sdr.GetSensorNumber(), 0x42);
}

TEST(SdrTest, OnlyFormatThreeHasNoAnalogReading) {
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

class TenBitFactorTest : public ::testing::TestWithParam<Factor> {};

TEST_P(TenBitFactorTest, FactorIsReadInTwoHalves) {
    const Factor& factor = GetParam();
    Record record{};
    record[24] = record[26] = static_cast<unsigned char>(factor.low);
    record[25] = record[27] = static_cast<unsigned char>(factor.high);
    SDR sdr(record.data());
    EXPECT_EQ(sdr.GetValueM(), factor.value);
    EXPECT_EQ(sdr.GetValueB(), factor.value);
}

INSTANTIATE_TEST_SUITE_P(Sdr, TenBitFactorTest,
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

class ExponentTest : public ::testing::TestWithParam<Exponents> {};

TEST_P(ExponentTest, ExponentHasFourSignedBits) {
    Record record{};
    record[29] = static_cast<unsigned char>(GetParam().byte);
    SDR sdr(record.data());
    EXPECT_EQ(sdr.GetRExpValue(), GetParam().r);
    EXPECT_EQ(sdr.GetBExpValue(), GetParam().b);
}

INSTANTIATE_TEST_SUITE_P(Sdr, ExponentTest,
                         ::testing::Values(Exponents{0x00, 0, 0}, Exponents{0xE9, -2, -7},
                                           Exponents{0x17, 1, 7}, Exponents{0x88, -8, -8},
                                           Exponents{0x70, 7, 0}, Exponents{0x0F, 0, -1},
                                           Exponents{0xF0, -1, 0}));

class IdStringTest : public ::testing::Test {
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

TEST_F(IdStringTest, AShortOneIsCopiedAndTerminatedAtFifteen) {
    EXPECT_EQ(Get(0xC4), std::string("abcd###########\0####", 20));
}

TEST_F(IdStringTest, FifteenCharactersFill) {
    EXPECT_EQ(Get(0xCF), std::string("abcdefghijklmno\0####", 20));
}

TEST_F(IdStringTest, ALengthOfTwentyCopiesFifteenCharacters) {
    EXPECT_EQ(Get(0xD4), std::string("abcdefghijklmno\0####", 20));
}

TEST_F(IdStringTest, AnEmptyOneWritesTheTerminatorOnly) {
    EXPECT_EQ(Get(0xC0), std::string("###############\0####", 20));
}

TEST_F(IdStringTest, ANullPointerIsRefused) {
    EXPECT_EQ(SDR(record.data()).GetIDstring(nullptr), -1);
}

TEST_F(IdStringTest, ItsOwnLengthReadsZeroForEveryByte) {
    for (int byte = 0; byte < 256; ++byte) {
        record[47] = static_cast<unsigned char>(byte);
        EXPECT_EQ(SDR(record.data()).GetIDstringLen(), 0) << byte;
    }
}

}  // namespace
