// SPDX-License-Identifier: MIT
//
// Unit texts, and highest and lowest readings as texts.

#include <cstring>

#include "IPMI/SensorNames.h"
#include "support/IpmiTest.h"

namespace {

class SensorUnitTest : public IpmiTest {
protected:
    // The unit of the record, written into a buffer that allows `size` bytes.
    Answer Text(const sim::SdrRecord& record, int size = 64) {
        sim::Bytes bytes = record.Image();
        Sensors().sdr = bytes.data();
        return AskWith(Buffer::kMarked,
                       [&](char* out) { return Sensors().GetSensorUnit(out, size); });
    }
    static sim::SdrRecord Record(int unit1, int base = 0, int modifier = 0) {
        return sim::SdrRecord("S", 1)
            .Unit1(static_cast<std::uint8_t>(unit1))
            .Unit(static_cast<std::uint8_t>(base), static_cast<std::uint8_t>(modifier));
    }
};

TEST_F(SensorUnitTest, EveryBaseUnitHasItsTextWithoutATerminator) {
    for (int code = 0; code <= 90; ++code)
        EXPECT_EQ(Text(Record(0, code)), Copied(SensorsUnit[code])) << code;
}

TEST_F(SensorUnitTest, CodeEighteenIsRpm) {
    EXPECT_EQ(Text(Record(0, 18)), Copied("RPM"));
}

TEST_F(SensorUnitTest, CodesPastTheTableAreEmpty) {
    EXPECT_EQ(Text(Record(0, 91)), Terminated(""));
    EXPECT_EQ(Text(Record(0, 255)), Terminated(""));
}

TEST_F(SensorUnitTest, ABaseUnitIsCutToTheSize) {
    EXPECT_EQ(Text(Record(0, 1), 9), Copied("degree C"));
    EXPECT_EQ(Text(Record(0, 1), 8), Copied("degree "));
    EXPECT_EQ(Text(Record(0, 1), 1), NothingWritten());
    EXPECT_EQ(Text(Record(0, 1), 0), NothingWritten());
}

TEST_F(SensorUnitTest, RatesAreFiveCharactersAndNothingElse) {
    const char* const texts[] = {"per \xB5", "per m", "per s", "per m", "per h", "per d"};
    for (int rate = 1; rate <= 6; ++rate) {
        EXPECT_EQ(Text(Record(rate << 3, 18)), Copied(texts[rate - 1])) << rate;
        EXPECT_EQ(Text(Record(rate << 3 | 1, 18)), Copied(texts[rate - 1])) << "and percentage";
    }
    EXPECT_EQ(Text(Record(1 << 3), 4), Copied("per"));
    EXPECT_EQ(Text(Record(1 << 3), 0), NothingWritten());
}

TEST_F(SensorUnitTest, RateSevenIsNone) {
    EXPECT_EQ(Text(Record(7 << 3, 18)), Copied("RPM"));
}

TEST_F(SensorUnitTest, APercentageHidesTheBaseUnit) {
    EXPECT_EQ(Text(Record(0x01, 18)), Terminated("%"));
    EXPECT_EQ(Text(Record(0x01 | 7 << 3, 18)), Terminated("%"));
    EXPECT_EQ(Text(Record(0x01, 18), 1), Terminated(""));
}

TEST_F(SensorUnitTest, ModifiersDivideOrMultiply) {
    EXPECT_EQ(Text(Record(1 << 1, 4, 22)), Terminated("V/second"));
    EXPECT_EQ(Text(Record(2 << 1, 4, 5)), Terminated("V*Amps"));
    EXPECT_EQ(Text(Record(1 << 1, 90, 90)), Terminated("uncorrectable error/uncorrectable error"));
    EXPECT_EQ(Text(Record(1 << 1, 4, 22), 5), Terminated("V/se"));
}

TEST_F(SensorUnitTest, TheUnitOfCodeOneIsBaseOrModifierLikeAnyOther) {
    EXPECT_EQ(Text(Record(1 << 1, 1, 22)), Terminated("degree C/second"));
    EXPECT_EQ(Text(Record(2 << 1, 4, 1)), Terminated("V*degree C"));
}

TEST_F(SensorUnitTest, ModifiersOutsideOfTheTableEmptyTheText) {
    for (const int use : {1 << 1, 2 << 1}) {
        EXPECT_EQ(Text(Record(use, 0, 22)), Terminated(""));
        EXPECT_EQ(Text(Record(use, 4, 0)), Terminated(""));
        EXPECT_EQ(Text(Record(use, 91, 22)), Terminated(""));
        EXPECT_EQ(Text(Record(use, 4, 91)), Terminated(""));
    }
}

TEST_F(SensorUnitTest, TheReservedModifierUseWritesNothing) {
    EXPECT_EQ(Text(Record(3 << 1, 4, 22)), NothingWritten());
}

TEST_F(SensorUnitTest, AllOnesAndNoRecordAreEmpty) {
    EXPECT_EQ(Text(Record(0xFF, 18)), Terminated(""));
    Sensors().sdr = nullptr;
    char out[4] = "abc";
    EXPECT_EQ(Sensors().GetSensorUnit(out, 4), 0);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(Sensors().GetSensorUnit(nullptr, 4), -1);
}

// Highest and lowest readings.

class LimitsTest : public IpmiTest {
protected:
    // Walks over one record and gives its entry a unit, which the walk has not when it writes.
    void Load(const sim::SdrRecord& record) {
        Add(record, 0);
        ASSERT_EQ(Sensors().GetSensorNumbers(1), 0);
        std::strcpy(Sensors().SensorsInformation[0].SensorUnit, "U");
    }
    Answer Max() { return Ask(&Sensor::ReadSensorMax, 0); }
    Answer Min() { return Ask(&Sensor::ReadSensorMin, 0); }
};

TEST_F(LimitsTest, LimitsHaveTwoDecimalsAndTheUnit) {
    Load(Voltage("V", 1).Limits(250, 125));
    EXPECT_EQ(Max(), Terminated("5.00U"));
    EXPECT_EQ(Min(), Terminated("2.50U"));
}

TEST_F(LimitsTest, LimitsOfFansAreWholeNumbers) {
    Load(Fan("F", 1).Factors(55, 0, 0, -1).Limits(101, 1));
    EXPECT_EQ(Max(), Terminated("555U"));
    EXPECT_EQ(Min(), Terminated("5U"));
}

TEST_F(LimitsTest, TheHighestUnsignedByteStandsForItself) {
    Load(Voltage("V", 1).Limits(0xFF, 0xFF));
    EXPECT_EQ(Max(), Terminated("FFU"));
    EXPECT_EQ(Min(), Terminated("FFU"));
}

TEST_F(LimitsTest, TheHighestSignedByteStandsForItself) {
    Load(Voltage("V", 1).Unit1(0x80).Limits(0x7F, 0x7F));
    EXPECT_EQ(Max(), Terminated("7FU"));
    EXPECT_EQ(Min(), Terminated("7FU"));
}

TEST_F(LimitsTest, OtherFormatsHaveNoByteOfTheirOwn) {
    Load(Voltage("V", 1).Unit1(0x40).Limits(0xFF, 0x7F));
    EXPECT_EQ(Max(), Terminated("0.00U"));
    EXPECT_EQ(Min(), Terminated("2.56U"));
}

TEST_F(LimitsTest, AnUnsignedSevenFAndASignedFFAreConverted) {
    Load(Voltage("V", 1).Limits(0x7F, 0));
    EXPECT_EQ(Max(), Terminated("2.54U"));
    Load(Voltage("V", 1));
    sim::Bytes record = Voltage("V", 1).Unit1(0x80).Limits(0xFF, 0).Image();
    Sensors().sdr = record.data();
    Sensors().SensorsInformation[0].sfp.Unit1 = 0x80;
    EXPECT_EQ(Max(), Terminated("0.02U"));
}

TEST_F(LimitsTest, LimitsHaveTheFormatOfTheEntryAndTheTypeOfTheRecord) {
    Load(Voltage("V", 1).Limits(0xFF, 0x7F));
    Sensors().SensorsInformation[0].sfp.Unit1 = 0x80;
    EXPECT_EQ(Max(), Terminated("0.02U"));
    EXPECT_EQ(Min(), Terminated("7FU"));
    Sensors().SensorsInformation[0].SensorType = kFan;
    EXPECT_EQ(Max(), Terminated("0.02U")) << "of a voltage's record";
}

TEST_F(LimitsTest, LimitsLongerThanTheFieldAreCut) {
    Load(Voltage("V", 1).Limits(250, 0));
    std::strcpy(Sensors().SensorsInformation[0].SensorUnit, std::string(63, 'u').c_str());
    EXPECT_EQ(Max(), Terminated("5.00" + std::string(59, 'u')));
}

TEST_F(LimitsTest, LimitsOfMissingEntriesAndNullPointersAreRefused) {
    Load(Voltage("V", 1));
    EXPECT_EQ(Sensors().ReadSensorMax(0, nullptr), -1);
    EXPECT_EQ(Sensors().ReadSensorMin(0, nullptr), -1);
    EXPECT_EQ(Ask(&Sensor::ReadSensorMax, 1), Missing());
    EXPECT_EQ(Ask(&Sensor::ReadSensorMin, -1), Missing());
}

}  // namespace
