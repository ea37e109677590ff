// SPDX-License-Identifier: MIT
//
// The exported function that changes thresholds.

#include "Talvane.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;

class ThresholdChangeTest : public IpmiTest {};

TEST_F(ThresholdChangeTest, ChangeReachesEverySensorOfTheKind) {
    AddThree();
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, THRESHOLD_UPPER_WARNING, 105.0), 0);
    EXPECT_EQ(bmc.Count("Set Sensor Thresholds"), 2u);
    EXPECT_EQ(bmc.RequestTexts().at(7), "Set Sensor Thresholds 10 3F 1E 14 0A 69 6E 78");
    EXPECT_EQ(bmc.RequestTexts().at(8), "Set Sensor Thresholds 11 38 1F 15 0B 69 6F 79");
    EXPECT_THAT(bmc.Thresholds(0x11).values, ElementsAre(0, 0, 0, 105, 111, 121))
        << "the settable ones";
}

TEST_F(ThresholdChangeTest, ChangeMovesTheNeighboursOverTheWholeRange) {
    AddThree();
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, THRESHOLD_LOWER_WARNING, 5.0), 0);
    EXPECT_THAT(bmc.Thresholds(0x10).values, ElementsAre(5, 4, 3, 100, 110, 120));
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, THRESHOLD_UPPER_CRITICAL, 254.0), 0);
    EXPECT_THAT(bmc.Thresholds(0x10).values, ElementsAre(30, 20, 10, 100, 254, 255))
        << "from the thresholds of the walk";
}

TEST_F(ThresholdChangeTest, ChangeOfAThresholdThatIsNotSettableChangesNothing) {
    AddThree();
    EXPECT_EQ(SetThresholdInfo(29, kFan, THRESHOLD_LOWER_CRITICAL, 1000.0), 0);
    EXPECT_EQ(bmc.RequestTexts().back(), "Set Sensor Thresholds 30 00 03 02 01 64 6E 78");
}

TEST_F(ThresholdChangeTest, ChangeThatWalksFirstLeavesNoSensorKnown) {
    AddThree();
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, THRESHOLD_UPPER_WARNING, 105.0), 0);
    FanInformation fans{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), -1);
}

TEST_F(ThresholdChangeTest, AfterASensorQueryTheSensorsStayKnown) {
    AddThree();
    FanInformation fans{};
    ASSERT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, THRESHOLD_UPPER_WARNING, 105.0), 0);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
}

TEST_F(ThresholdChangeTest, LowBytesOfTheArgumentsSelectTheSensors) {
    AddThree();
    EXPECT_EQ(SetThresholdInfo(0x103, 0x101, THRESHOLD_UPPER_WARNING, 105.0), 0);
    EXPECT_EQ(bmc.Count("Set Sensor Thresholds"), 2u);
}

TEST_F(ThresholdChangeTest, ChangeOfAnUnknownThresholdWritesThePresentValues) {
    AddThree();
    for (const int which : {-1, 6, 0x100}) {
        bmc.ForgetRequests();
        EXPECT_EQ(SetThresholdInfo(3, kTemperature, which, 50.0), 0) << which;
        EXPECT_EQ(bmc.Count("Set Sensor Thresholds"), 2u);
        EXPECT_EQ(bmc.RequestTexts().back(), "Set Sensor Thresholds 11 38 1F 15 0B 65 6F 79");
    }
}

TEST_F(ThresholdChangeTest, ChangeReachesADozenSensors) {
    for (std::uint8_t number = 1; number <= 12; ++number)
        Add(Temperature("T", number).Entity(3).ThresholdMasks(0x3F, 0x3F), 40);
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, THRESHOLD_UPPER_NON_RECOVERABLE, 90.0), 0);
    EXPECT_EQ(bmc.Count("Set Sensor Thresholds"), 12u);
    for (std::uint8_t number = 1; number <= 12; ++number)
        EXPECT_EQ(bmc.Thresholds(number).values[5], 90) << int{number};
}

TEST_F(ThresholdChangeTest, ChangeTakesTheFormulaOfTheIndexsLowByte) {
    constexpr int kIndex = 257;
    for (int k = 0; k < kIndex; ++k) {
        const int step = k == 1 ? 2 : 1;
        Add(Temperature("T", 1).Entity(7).Factors(step, 0, 0, 0), 40);
    }
    Add(Temperature("T", 0x42).Entity(3).ThresholdMasks(0x3F, 0x3F), 40);
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, THRESHOLD_UPPER_NON_RECOVERABLE, 80.0), 0);
    EXPECT_EQ(bmc.Thresholds(0x42).values[5], 40) << "by entry 1, two degrees per step";
}

TEST_F(ThresholdChangeTest, ChangeThatMatchesNoSensorSucceeds) {
    AddThree();
    EXPECT_EQ(SetThresholdInfo(7, kTemperature, 0, 1.0), 0);
    EXPECT_EQ(SetThresholdInfo(7, kTemperature, 0, 1.0), 0) << "not busy";
    EXPECT_EQ(bmc.Count("Set Sensor Thresholds"), 0u);
}

TEST_F(ThresholdChangeTest, ChangeWithoutARepositoryFails) {
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, 0, 1.0), -1);
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, 0, 1.0), -1) << "not busy";
}

TEST_F(ThresholdChangeTest, ValueIsConvertedForEachSensor) {
    Add(Voltage("V", 0x20).Entity(10).ThresholdMasks(0x3F, 0x3F), 165);
    EXPECT_EQ(SetThresholdInfo(10, kVoltage, THRESHOLD_UPPER_NON_RECOVERABLE, 3.6), 0);
    EXPECT_EQ(bmc.Thresholds(0x20).values[5], 180);
}

int nestedChange = 77;
int nestedList = 77;
int nestedAll = 77;

TEST_F(ThresholdChangeTest, NestedChangeIsBusyAndANestedListIsNot) {
    AddThree();
    server.During("ioctl", [] {
        SensorThresholdInformation inner{};
        nestedChange = SetThresholdInfo(3, 1, 0, 1.0);
        nestedList = GetThresholdInfo(3, 1, &inner);
        nestedAll = GetAllThresholdInfo(&inner);
    });
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, THRESHOLD_UPPER_WARNING, 105.0), 0);
    EXPECT_EQ(nestedChange, 1);
    EXPECT_EQ(nestedList, -1);
    EXPECT_EQ(nestedAll, 0);
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, THRESHOLD_UPPER_WARNING, 105.0), 0);
}

TEST_F(ThresholdChangeTest, ChangesAndListsAreNotBusyWithinASensorQuery) {
    AddThree();
    server.During("ioctl", [] {
        SensorThresholdInformation inner{};
        nestedAll = GetAllThresholdInfo(&inner);
        nestedList = GetThresholdInfo(3, 1, &inner);
        EXPECT_EQ(inner.quantity, 2);
        nestedChange = SetThresholdInfo(3, 1, THRESHOLD_UPPER_WARNING, 105.0);
    });
    FanInformation fans{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    EXPECT_EQ(nestedAll, 0);
    EXPECT_EQ(nestedList, -1) << "as always";
    EXPECT_EQ(nestedChange, 0);
    EXPECT_EQ(bmc.Count("Set Sensor Thresholds"), 2u);
}

TEST_F(ThresholdChangeTest, ChangesAndListsAreNotBusyAfterARefusedWatchdogCall) {
    AddThree();
    server.During("ioctl", [] { (void)SetWatchDogTimer(1, 20000); });
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    FanInformation fans{};
    ASSERT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 1) << "sensor queries are";
    SensorThresholdInformation list{};
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, THRESHOLD_UPPER_WARNING, 105.0), 0);
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(list.quantity, 3);
    EXPECT_EQ(GetThresholdInfo(3, kTemperature, &list), -1);
    EXPECT_EQ(list.quantity, 2);
}

}  // namespace
