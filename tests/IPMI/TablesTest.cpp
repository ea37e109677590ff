// SPDX-License-Identifier: MIT
//
// The sensor tables and what they answer without asking the controller.

#include "support/IpmiTest.h"

namespace {

using ::testing::SizeIs;

class TablesTest : public IpmiTest {
protected:
    void AddOneOfEach() {
        Add(Temperature("T1", 0x10).Entity(3, 1).Limits(0x7F, 0x01), 40);
        Add(Voltage("V1", 0x20).Entity(10, 2).Limits(250, 10), 165);
        Add(Fan("F1", 0x30).Entity(29, 3), 70);
        Add(sim::SdrRecord("P1", 0x40).Kind(kProcessor).Event(0x6F).Entity(3, 1), 0);
        bmc.SetThresholds(0, {0x3F, {1, 2, 3, 4, 5, 6}});
        bmc.SetThresholds(1, {0x3F, {11, 12, 13, 14, 15, 16}});
        bmc.SetThresholds(2, {0x3F, {21, 22, 23, 24, 25, 26}});
    }
};

TEST_F(TablesTest, SensorsAreSortedByType) {
    AddOneOfEach();
    Loaded();
    EXPECT_EQ(Support().GetTemSensorsNum(), 1);
    EXPECT_EQ(Support().GetVoltSensorsNum(), 1);
    EXPECT_EQ(Support().GetFanSensorsNum(), 1);
    EXPECT_EQ(Sensors().PSInfo.quantity, 1);
    EXPECT_STREQ(Sensors().PSInfo.sd[0].IDString, "P1");
}

TEST_F(TablesTest, EveryGetterAnswersFromItsTable) {
    AddOneOfEach();
    Loaded();
    struct ByteGetter {
        const char* name;
        int (IPMIsupport::*read)(int, unsigned char&);
        unsigned char expected;
    };
    constexpr ByteGetter kBytes[] = {
        {"GetTemperatureEntityID", &IPMIsupport::GetTemperatureEntityID, 3},
        {"GetVoltageEntityID", &IPMIsupport::GetVoltageEntityID, 10},
        {"GetFanEntityID", &IPMIsupport::GetFanEntityID, 29},
        {"GetTemperatureSensorNumber", &IPMIsupport::GetTemperatureSensorNumber, 0x10},
        {"GetVoltageSensorNumber", &IPMIsupport::GetVoltageSensorNumber, 0x20},
        {"GetFanSensorNumber", &IPMIsupport::GetFanSensorNumber, 0x30},
        {"GetTemperatureSensorType", &IPMIsupport::GetTemperatureSensorType, kTemperature},
        {"GetVoltageSensorType", &IPMIsupport::GetVoltageSensorType, kVoltage},
        {"GetFanSensorType", &IPMIsupport::GetFanSensorType, kFan},
    };
    for (const ByteGetter& getter : kBytes) {
        SCOPED_TRACE(getter.name);
        unsigned char byte = 0;
        EXPECT_EQ((Support().*getter.read)(0, byte), 0);
        EXPECT_EQ(byte, getter.expected);
    }
    EXPECT_EQ(Ask(&Sensor::GetTemperatureIDString, 0), Terminated("T1"));
    EXPECT_EQ(Ask(&Sensor::GetVoltageIDString, 0), Terminated("V1"));
    EXPECT_EQ(Ask(&Sensor::GetFanIDString, 0), Terminated("F1"));
    EXPECT_EQ(Ask(&Sensor::GetVoltageMax, 0), Terminated("5.00"));
    EXPECT_EQ(Ask(&Sensor::GetVoltageMin, 0), Terminated("0.20"));
}

TEST_F(TablesTest, ThresholdsComeRawAndConverted) {
    AddOneOfEach();
    Loaded();
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    EXPECT_EQ(Support().GetTemperatureSensorThreshold(0, raw, converted), 0);
    EXPECT_EQ(raw.LowerNonCriticalThreshold, 1);
    EXPECT_EQ(Support().GetVoltageSensorThreshold(0, raw, converted), 0);
    EXPECT_EQ(raw.UpperNonRecoverThresholdValue, 16);
    EXPECT_EQ(converted.UpperNonRecoverThresholdValue, 0.32);
    EXPECT_EQ(Support().GetFanSensorThreshold(0, raw, converted), 0);
    EXPECT_EQ(converted.LowerCriticalThreshold, 1100.0);
}

TEST_F(TablesTest, WithoutAnalogReadingOnlyTemperaturesAreLeftOut) {
    Add(Temperature("T1", 0x10).Unit1(0xC0), 40);
    Add(Voltage("V1", 0x20).Unit1(0xC0), 40);
    Add(Fan("F1", 0x30).Unit1(0xC0), 40);
    Add(sim::SdrRecord("P1", 0x40).Kind(kProcessor).Event(0x6F).Unit1(0xC0), 0);
    Loaded();
    EXPECT_EQ(Support().GetTemSensorsNum(), 0);
    EXPECT_EQ(Support().GetVoltSensorsNum(), 1);
    EXPECT_EQ(Support().GetFanSensorsNum(), 1);
    EXPECT_EQ(Sensors().PSInfo.quantity, 1);
}

TEST_F(TablesTest, AVoltageOrFanWithoutAnalogReadingAlwaysReadsUnknown) {
    Add(Voltage("V1", 0x20).Unit1(0xC0), 40);
    Add(Fan("F1", 0x30).Unit1(0xC0), 40);
    Loaded();
    EXPECT_EQ(Ask(&Sensor::GetVoltageCurrent, 0), Terminated("Unknown"));
    EXPECT_EQ(Ask(&Sensor::GetFanSpeed, 0), Terminated("Unknown"));
}

TEST_F(TablesTest, LoadingTwiceDoublesTheQuantitiesAndWritesTheSameEntries) {
    AddOneOfEach();
    Loaded();
    Loaded();
    EXPECT_EQ(Support().GetFanSensorsNum(), 2);
    EXPECT_EQ(Support().GetVoltSensorsNum(), 2);
    EXPECT_EQ(Support().GetTemSensorsNum(), 2);
    EXPECT_STREQ(Sensors().FSInfo.sd[0].IDString, "F1");
    EXPECT_EQ(Sensors().FSInfo.sd[1].SensorNumbers, 0);
}

TEST_F(TablesTest, LoadingTwiceDoublesTheQuantitiesCappedByNothing) {
    for (std::uint8_t i = 0; i < 64; ++i) {
        Add(Fan("F" + std::to_string(i), i), 70);
        Add(sim::SdrRecord("P" + std::to_string(i), static_cast<std::uint8_t>(64 + i))
                .Kind(kProcessor),
            0);
    }
    Loaded();
    Loaded();
    EXPECT_EQ(Support().GetFanSensorsNum(), 128);
    EXPECT_EQ(Sensors().PSInfo.quantity, 128);
    EXPECT_STREQ(Sensors().FSInfo.sd[0].IDString, "F0");
    EXPECT_STREQ(Sensors().FSInfo.sd[63].IDString, "F63");
}

TEST_F(TablesTest, SixtyFourSensorsFillATable) {
    for (int i = 0; i < 70; ++i)
        Add(Fan("F" + std::to_string(i), static_cast<std::uint8_t>(i)), 70);
    Loaded();
    EXPECT_EQ(Support().GetFanSensorsNum(), 64);
    EXPECT_STREQ(Sensors().FSInfo.sd[63].IDString, "F63");
    unsigned char number = 0;
    EXPECT_EQ(Support().GetFanSensorNumber(63, number), 0) << "the last one that can be asked for";
    EXPECT_EQ(number, 63);
    EXPECT_EQ(Ask(&Sensor::GetFanSpeed, 63), Terminated("3500RPM"));
}

TEST_F(TablesTest, ASensorAfterTwoHundredFiftyFiveOthersIsFound) {
    for (int i = 0; i < 258; ++i) Add(Temperature("T", 0x10), 40);
    Add(Fan("F1", 0x90).Entity(29), 70);
    Loaded();
    EXPECT_EQ(Support().GetFanSensorsNum(), 1);
    EXPECT_EQ(Ask(&Sensor::GetFanIDString, 0), Terminated("F1"));
    SensorNumberInfo info;
    EXPECT_EQ(Support().GetSensorNumberInfo(29, kFan, 259, info), 0);
    EXPECT_EQ(info.quantity, 1);
    EXPECT_EQ(info.sensorOrder[0], 258);
    EXPECT_EQ(info.sensorNumber[0], 0x90);
}

TEST_F(TablesTest, OnlyTheFirstEntriesOfTheWalkAreLookedAt) {
    Add(Fan("F1", 1), 70);
    Add(Fan("F2", 2), 70);
    ASSERT_EQ(Sensors().GetSensorNumbers(2), 0);
    EXPECT_EQ(Sensors().GetFanSensorsInfo(1), 0);
    EXPECT_EQ(Sensors().FSInfo.quantity, 1);
    EXPECT_EQ(Sensors().GetFanSensorsInfo(0), -1);
    EXPECT_EQ(Sensors().GetVoltSensorsInfo(0), -1);
    EXPECT_EQ(Sensors().GetTemSensorsInfo(-1), -1);
    EXPECT_EQ(Sensors().GetProcessorSensorInfo(0), -1);
}

TEST_F(TablesTest, ACountPastTheWalkEndsWithIt) {
    Add(Fan("F1", 1), 70);
    ASSERT_EQ(Sensors().GetSensorNumbers(1), 0);
    EXPECT_EQ(Sensors().GetFanSensorsInfo(100000), 0);
    EXPECT_EQ(Sensors().FSInfo.quantity, 1);
    EXPECT_EQ(Sensors().GetVoltSensorsInfo(5), 0) << "before any walk, too";
}

TEST_F(TablesTest, WithoutAControllerThereAreNoSensors) {
    AddOneOfEach();
    Loaded();
    InitOK = 0;
    EXPECT_EQ(Support().GetFanSensorsNum(), 0);
    EXPECT_EQ(Support().GetVoltSensorsNum(), 0);
    EXPECT_EQ(Support().GetTemSensorsNum(), 0);
    EXPECT_EQ(Support().GetSensorInfo(), -1);
}

TEST_F(TablesTest, AnEmptyRepositoryCannotBeLoaded) {
    EXPECT_EQ(Support().GetSensorInfo(), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(1));
}

TEST_F(TablesTest, IndexesOutsideOfATableAreRefused) {
    AddOneOfEach();
    Loaded();
    for (const int i : {-1, 64, 65, 1000}) {
        unsigned char byte = 0x77;
        char status = 0x77;
        SensorThresholdInfoRaw raw{};
        SensorThresholdInfoConverted converted{};
        EXPECT_EQ(Sensors().GetFanEntityID(i, byte), -1);
        EXPECT_EQ(Sensors().GetVoltageSensorNumber(i, byte), -1);
        EXPECT_EQ(Sensors().GetTemperatureSensorType(i, byte), -1);
        EXPECT_EQ(byte, 0x77);
        EXPECT_EQ(Sensors().GetFanStatus(i, status), -1);
        EXPECT_EQ(status, 0x77);
        EXPECT_EQ(Sensors().GetFanSensorThreshold(i, raw, converted), -1);
        EXPECT_EQ(Ask(&Sensor::GetFanIDString, i), Missing());
        EXPECT_EQ(Ask(&Sensor::GetVoltageMax, i), Missing());
        EXPECT_EQ(Ask(&Sensor::GetFanStatusDescription, i), Missing());
        EXPECT_EQ(Ask(&Sensor::GetFanSpeed, i), Terminated("Unknown"));
        EXPECT_EQ(Ask(&Sensor::GetVoltageCurrent, i), Terminated("Unknown"));
        EXPECT_EQ(Ask(&Sensor::GetTemperatureCurrent, i), Terminated("Unknown"));
    }
}

TEST_F(TablesTest, NullPointersAreRefused) {
    AddOneOfEach();
    Loaded();
    EXPECT_EQ(Sensors().GetFanIDString(0, nullptr), -1);
    EXPECT_EQ(Sensors().GetVoltageIDString(0, nullptr), -1);
    EXPECT_EQ(Sensors().GetTemperatureIDString(0, nullptr), -1);
    EXPECT_EQ(Sensors().GetVoltageMax(0, nullptr), -1);
    EXPECT_EQ(Sensors().GetVoltageMin(0, nullptr), -1);
    EXPECT_EQ(Sensors().GetFanSpeed(0, nullptr), -1);
    EXPECT_EQ(Sensors().GetVoltageCurrent(0, nullptr), -1);
    EXPECT_EQ(Sensors().GetTemperatureCurrent(0, nullptr), -1);
}

}  // namespace
