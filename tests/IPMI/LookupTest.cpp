// SPDX-License-Identifier: MIT
//
// Entries of the walk: by entity and type, and by their index.

#include "support/IpmiTest.h"

namespace {

class LookupTest : public IpmiTest {};

TEST_F(LookupTest, SensorsOfOneEntityAndTypeAreListedInOrder) {
    Add(Temperature("A", 0x10).Entity(3), 0);
    Add(Temperature("B", 0x11).Entity(7), 0);
    Add(Voltage("C", 0x12).Entity(3), 0);
    Add(Temperature("D", 0x13).Entity(3), 0);
    ASSERT_EQ(Sensors().GetSensorNumbers(4), 0);
    SensorNumberInfo info;
    info.quantity = 99;
    EXPECT_EQ(Support().GetSensorNumberInfo(3, kTemperature, 4, info), 0);
    EXPECT_EQ(info.quantity, 2);
    EXPECT_EQ(info.sensorOrder[0], 0);
    EXPECT_EQ(info.sensorOrder[1], 3);
    EXPECT_EQ(info.sensorNumber[0], 0x10);
    EXPECT_EQ(info.sensorNumber[1], 0x13);
    EXPECT_EQ(info.sensorOrder[2], 0);
}

TEST_F(LookupTest, EntityZeroIsNoWildcard) {
    Add(Temperature("A", 0x10).Entity(3), 0);
    Add(Temperature("B", 0x11).Entity(0), 0);
    Add(Temperature("C", 0x12).Entity(0xFF), 0);
    ASSERT_EQ(Sensors().GetSensorNumbers(3), 0);
    SensorNumberInfo info;
    EXPECT_EQ(Support().GetSensorNumberInfo(0, kTemperature, 3, info), 0);
    EXPECT_EQ(info.quantity, 2);
    EXPECT_EQ(info.sensorNumber[0], 0x11);
    EXPECT_EQ(info.sensorNumber[1], 0x12) << "an unknown entity is kept as 0";
}

TEST_F(LookupTest, NoMatchAnswersZeroWithAnEmptyList) {
    SensorNumberInfo info;
    info.quantity = 99;
    EXPECT_EQ(Sensors().GetSensorNumberInfo(3, kTemperature, 10, info), 0);
    EXPECT_EQ(info.quantity, 0);
}

TEST_F(LookupTest, TheListEndsWithSixtyFour) {
    for (int i = 0; i < 70; ++i) Add(Fan("F", static_cast<std::uint8_t>(i)).Entity(29), 0);
    ASSERT_EQ(Sensors().GetSensorNumbers(70), 0);
    SensorNumberInfo info;
    EXPECT_EQ(Sensors().GetSensorNumberInfo(29, kFan, 70, info), 0);
    EXPECT_EQ(info.quantity, 64);
    EXPECT_EQ(info.sensorOrder[63], 63);
}

TEST_F(LookupTest, EntriesAnswerFormulaAndThresholds) {
    Add(Voltage("V", 0x12), 0);
    ASSERT_EQ(Sensors().GetSensorNumbers(1), 0);
    SensorFormulaParameter formula{};
    EXPECT_EQ(Support().GetSensorFormulaParameter(0, formula), 0);
    EXPECT_EQ(formula.M, 2);
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    EXPECT_EQ(Support().GetThreshold(0, raw, converted), 0);
    EXPECT_EQ(raw.sensorType, kVoltage);
}

TEST_F(LookupTest, EntriesPastTheWalkAreMissing) {
    SensorFormulaParameter formula{};
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    EXPECT_EQ(Sensors().GetThreshold(0, raw, converted), -1) << "before any walk";
    EXPECT_EQ(Sensors().GetSensorFormulaParameter(0, formula), -1);
    Add(Voltage("V", 0x12), 0);
    ASSERT_EQ(Sensors().GetSensorNumbers(1), 0);
    raw.sensorType = 77;
    EXPECT_EQ(Sensors().GetThreshold(1, raw, converted), -1);
    EXPECT_EQ(Sensors().GetThreshold(-1, raw, converted), -1);
    EXPECT_EQ(raw.sensorType, 77);
    EXPECT_EQ(Sensors().GetSensorFormulaParameter(1, formula), -1);
}

TEST_F(LookupTest, ProcessorReadingsWriteNothing) {
    char text[] = "#";
    EXPECT_EQ(Sensors().GetProcessorTemperature(text), 0);
    EXPECT_EQ(Sensors().GetProcessorVoltage(text), 0);
    EXPECT_STREQ(text, "#");
}

}  // namespace
