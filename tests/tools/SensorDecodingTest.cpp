// SPDX-License-Identifier: MIT
//
// From the bytes of records and answers to sensors, values and limits.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "NoValue.h"
#include "SensorExamples.h"
#include "tools/sensors/IdString.h"
#include "tools/sensors/SensorAnswer.h"
#include "tools/sensors/SensorRecord.h"
#include "tools/sensors/SensorValue.h"

namespace tool {
namespace {

using Bytes = std::vector<unsigned char>;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A full record of sensor 0x30 with the factors of the test.
Bytes FullRecord() {
    Bytes record(48 + 4, 0);
    record[3] = 1;
    record[5] = 0x20;
    record[6] = 0x02;
    record[7] = 0x30;
    record[8] = 3;
    record[9] = 0x82;
    record[12] = 1;
    record[13] = 1;
    record[18] = 0x3F;
    record[19] = 0x38;
    record[20] = 0x80;
    record[21] = 1;
    record[24] = 0xFE;
    record[25] = 0xC0;
    record[26] = 0x9C;
    record[27] = 0xC0;
    record[29] = 0xF2;
    record[47] = 0xC4;
    std::copy_n("CPU1", 4, record.begin() + 48);
    return record;
}

TEST(SensorRecordTest, TakesEachFieldOfAFullRecordFromItsPlace) {
    const auto sensors = DecodeSensorRecord(FullRecord());
    ASSERT_THAT(sensors, SizeIs(1));
    const SensorRecord& sensor = sensors[0];
    EXPECT_EQ(sensor.kind, SensorRecord::Kind::kFull);
    EXPECT_EQ(sensor.owner, 0x20);
    EXPECT_EQ(sensor.lun, 2);
    EXPECT_EQ(sensor.number, 0x30);
    EXPECT_EQ(sensor.entity, 3);
    EXPECT_EQ(sensor.instance, 2) << "bit 7 says physical or logical";
    EXPECT_EQ(sensor.type, 1);
    EXPECT_TRUE(HasThresholds(sensor));
    EXPECT_EQ(sensor.mask, 0x383FU);
    EXPECT_EQ(sensor.name, "CPU1");
    EXPECT_EQ(UnitName(sensor), "degree C");
    EXPECT_EQ(sensor.formula.format, ReadingFormula::Format::kTwosComplement);
    EXPECT_EQ(sensor.formula.m, -2) << "ten bits, sign-extended";
    EXPECT_EQ(sensor.formula.b, -100);
    EXPECT_EQ(sensor.formula.resultExponent, -1);
    EXPECT_EQ(sensor.formula.bExponent, 2);
}

TEST(SensorRecordTest, HasNoSensorInOtherRecordsAndInOnesThatEndBeforeTheNumber) {
    Bytes locator = FullRecord();
    locator[3] = 0x11;
    EXPECT_THAT(DecodeSensorRecord(locator), IsEmpty());
    const Bytes record = FullRecord();
    EXPECT_THAT(DecodeSensorRecord(talvane::ByteView(record).first(7)), IsEmpty());
    EXPECT_THAT(DecodeSensorRecord({}), IsEmpty());
}

TEST(SensorRecordTest, TakesMissingBytesForZeroInARecordThatIsCut) {
    const Bytes record = FullRecord();
    const auto sensors = DecodeSensorRecord(talvane::ByteView(record).first(8));
    ASSERT_THAT(sensors, SizeIs(1));
    EXPECT_EQ(sensors[0].number, 0x30);
    EXPECT_EQ(sensors[0].name, "");
    EXPECT_EQ(sensors[0].type, 0);
    const auto named = DecodeSensorRecord(talvane::ByteView(record).first(50));
    EXPECT_EQ(named[0].name, "CP");
}

// A compact record of sensor 0x40, shared by `sharing` sensors.
Bytes CompactRecord(unsigned char sharing, unsigned char second) {
    Bytes record(32 + 3, 0);
    record[3] = 2;
    record[5] = 0x20;
    record[7] = 0x40;
    record[8] = 10;
    record[9] = 1;
    record[12] = 8;
    record[13] = 0x6F;
    record[18] = 0x0F;
    record[23] = sharing;
    record[24] = second;
    record[31] = 0xC3;
    std::copy_n("PSU", 3, record.begin() + 32);
    return record;
}

TEST(SensorRecordTest, GivesEachSensorOfASharedCompactRecordItsNumberNameAndInstance) {
    const auto digits = DecodeSensorRecord(CompactRecord(0x03, 0x81));
    ASSERT_THAT(digits, SizeIs(3));
    EXPECT_EQ(digits[0].name, "PSU1");
    EXPECT_EQ(digits[2].name, "PSU3");
    EXPECT_EQ(digits[2].number, 0x42);
    EXPECT_EQ(digits[2].instance, 3);
    const auto letters = DecodeSensorRecord(CompactRecord(0x12, 25));
    ASSERT_THAT(letters, SizeIs(2));
    EXPECT_EQ(letters[0].name, "PSUZ");
    EXPECT_EQ(letters[1].name, "PSUAA");
    EXPECT_EQ(letters[1].instance, 1) << "the same instance";
}

TEST(SensorRecordTest, KeepsTheNameOfACompactRecordThatIsNotShared) {
    for (const int count : {0, 1}) {
        const auto sensors =
            DecodeSensorRecord(CompactRecord(static_cast<unsigned char>(count), 5));
        ASSERT_THAT(sensors, SizeIs(1));
        EXPECT_EQ(sensors[0].name, "PSU");
    }
}

TEST(SensorRecordTest, TakesTypeAndNameOfAnEventOnlyRecordFromTheirOwnPlaces) {
    const auto sensors = DecodeSensorRecord(EventOnlyRecord());
    ASSERT_THAT(sensors, SizeIs(1));
    EXPECT_EQ(sensors[0].kind, SensorRecord::Kind::kEventOnly);
    EXPECT_EQ(sensors[0].type, 0x12);
    EXPECT_EQ(sensors[0].eventType, 0x6F);
    EXPECT_EQ(sensors[0].name, "EV");
}

TEST(UnitNameTest, HasPercentageModifierAndRate) {
    SensorRecord record;
    record.baseUnit = 4;
    EXPECT_EQ(UnitName(record), "V");
    record.unit1 = 0x02;
    record.modifierUnit = 22;
    EXPECT_EQ(UnitName(record), "V/second");
    record.unit1 = 0x04;
    EXPECT_EQ(UnitName(record), "V*second");
    record.unit1 = 0x18;
    EXPECT_EQ(UnitName(record), "V per s");
    record.unit1 = 0x01;
    EXPECT_EQ(UnitName(record), "%");
    record.unit1 = 0;
    record.baseUnit = 0xFF;
    EXPECT_EQ(UnitName(record), "") << "a code without a name";
}

TEST(IdStringTest, DecodesItsFourEncodings) {
    EXPECT_EQ(IdString(Bytes{0xC5, ' ', 'A', 'b', ' ', ' '}, 0), "Ab");
    EXPECT_EQ(IdString(Bytes{0xC4, 'A', 0, 'b', 'c'}, 0), "A") << "up to a NUL";
    EXPECT_EQ(IdString(Bytes{0x42, 0x12, 0xBC}, 0), "12-.");
    EXPECT_EQ(IdString(Bytes{0x83, 0x29, 0xDC, 0xA6}, 0), "IPMI") << "the standard's example";
    EXPECT_EQ(IdString(Bytes{0xC4, 'x'}, 0), "x") << "a record that is cut";
    EXPECT_EQ(IdString(Bytes{}, 0), "");
    EXPECT_EQ(IdString(Bytes{0xC2, ' ', ' '}, 0), "");
}

ReadingFormula Formula(ReadingFormula::Format format, int linearization, int m, int b,
                       int bExponent, int resultExponent) {
    return {format, linearization, m, b, bExponent, resultExponent};
}

TEST(ReadingValueTest, FollowsTheStandardForSignedReadings) {
    constexpr auto kOnes = ReadingFormula::Format::kOnesComplement;
    constexpr auto kTwos = ReadingFormula::Format::kTwosComplement;
    constexpr auto kPlain = ReadingFormula::Format::kUnsigned;
    EXPECT_EQ(ReadingValue(Formula(kTwos, 0, 1, 0, 0, 0), 0xFB), -5);
    EXPECT_EQ(ReadingValue(Formula(kTwos, 0, 1, 0, 0, 0), 0x7F), 127);
    EXPECT_EQ(ReadingValue(Formula(kOnes, 0, 1, 0, 0, 0), 0xFA), -5);
    EXPECT_EQ(ReadingValue(Formula(kPlain, 0, 1, 0, 0, 0), 0xFB), 251);
    EXPECT_EQ(ReadingValue(Formula(kPlain, 0, -1, 0, 0, 0), 5), -5);
}

TEST(ReadingValueTest, ScalesOffsetAndResultByPowersOfTen) {
    constexpr auto kPlain = ReadingFormula::Format::kUnsigned;
    EXPECT_EQ(ReadingValue(Formula(kPlain, 0, 63, 0, 0, -3), 200), 12.6);
    EXPECT_EQ(ReadingValue(Formula(kPlain, 0, 2, -1, 2, 0), 100), 100);
    EXPECT_EQ(ReadingValue(Formula(kPlain, 0, 1, 0, 0, 2), 3), 300);
}

TEST(ReadingValueTest, AppliesEachLinearization) {
    const double expected[] = {
        4, std::log(4.0), std::log10(4.0), 2, std::exp(4.0), 1e4, 16, 0.25, 16, 64,
        2, std::cbrt(4.0)};
    for (int code = 0; code < 12; ++code)
        EXPECT_DOUBLE_EQ(
            *ReadingValue(Formula(ReadingFormula::Format::kUnsigned, code, 1, 0, 0, 0), 4),
            expected[code]);
}

TEST(ReadingValueTest, HasNoValueWithoutAFormulaOrAFiniteResult) {
    constexpr auto kPlain = ReadingFormula::Format::kUnsigned;
    EXPECT_EQ(ReadingValue(Formula(ReadingFormula::Format::kNone, 0, 1, 0, 0, 0), 4), kNoValue);
    EXPECT_EQ(ReadingValue(Formula(kPlain, 0x70, 1, 0, 0, 0), 4), kNoValue);
    EXPECT_EQ(ReadingValue(Formula(kPlain, 7, 1, 0, 0, 0), 0), kNoValue) << "1/0";
    EXPECT_EQ(ReadingValue(Formula(kPlain, 1, -1, 0, 0, 0), 4), kNoValue) << "logarithm of -4";
}

TEST(SensorAnswerTest, IsReadOnlyWhenScannedAndAvailable) {
    using Status = SensorAnswer::Status;
    EXPECT_EQ(DecodeReading({}).status, Status::kNoAnswer);
    EXPECT_EQ(DecodeReading(Bytes{0x30}).status, Status::kNoAnswer) << "no flags";
    EXPECT_EQ(DecodeReading(Bytes{0x30, 0xC0, 0xC0}).status, Status::kRead);
    EXPECT_EQ(DecodeReading(Bytes{0x30, 0xE0, 0xC0}).status, Status::kUnavailable);
    EXPECT_EQ(DecodeReading(Bytes{0x30, 0x80, 0xC0}).status, Status::kNotScanned);
    EXPECT_EQ(DecodeReading(Bytes{0x30, 0xC0}).raw, 0x30);
}

TEST(SensorAnswerTest, HasNoStatesWhenTheAnswerEndsBeforeThem) {
    EXPECT_EQ(DecodeReading(Bytes{0, 0xC0}).states, kNoValue);
    EXPECT_EQ(DecodeReading(Bytes{0, 0xC0, 0x05}).states, 0x0005U);
    EXPECT_EQ(DecodeReading(Bytes{0, 0xC0, 0x05, 0x82}).states, 0x0205U) << "bit 15 is reserved";
}

TEST(SensorAnswerTest, HasTheThresholdsThatCanBeReadAndHaveArrived) {
    const auto formula = Formula(ReadingFormula::Format::kUnsigned, 0, 2, 0, 0, 0);
    EXPECT_THAT(DecodeThresholds(Bytes{0x1B, 10, 5, 1, 80, 90, 100}, formula),
                ElementsAre(20.0, 10.0, kNoValue, 160.0, 180.0, kNoValue));
    EXPECT_THAT(DecodeThresholds(Bytes{0x3F, 10, 5}, formula),
                ElementsAre(20.0, 10.0, kNoValue, kNoValue, kNoValue, kNoValue));
    EXPECT_EQ(DecodeThresholds({}, formula), Limits{});
}

}  // namespace
}  // namespace tool
