// SPDX-License-Identifier: MIT
//
// The exported functions that list thresholds.

#include <cstring>
#include <vector>

#include "Talvane.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::Each;
using ::testing::ElementsAre;

class ThresholdListTest : public IpmiTest {
protected:
    ThresholdListTest() { std::memset(&list, 0x5A, sizeof list); }

    SensorThresholdInformation list;
};

TEST_F(ThresholdListTest, ListHoldsEverySensor) {
    AddThree();
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(list.quantity, 3);
    const SensorThresholdInfo& first = list.SensorThreshold[0];
    EXPECT_EQ(first.DeviceID, 3);
    EXPECT_EQ(first.SensorType, kTemperature);
    EXPECT_EQ(first.LowerNonCriticalThreshold, 30.0);
    EXPECT_EQ(first.UpperNonRecoverThresholdValue, 120.0);
    EXPECT_EQ(first.readableFlag, 0);
    EXPECT_EQ(first.settableFlag, 0);
    EXPECT_EQ(list.SensorThreshold[2].DeviceID, 29);
    EXPECT_EQ(list.SensorThreshold[2].LowerCriticalThreshold, 100.0);
    EXPECT_EQ(list.SensorThreshold[63].SensorType, 0) << "the whole record is cleared";
}

TEST_F(ThresholdListTest, ListCountsTheRecordsThatAreNoSensors) {
    AddThree();
    Add(Temperature("Compact", 0x50).Byte(3, 2), 0);
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(list.quantity, 4);
    EXPECT_EQ(list.SensorThreshold[3].SensorType, 0);
}

TEST_F(ThresholdListTest, ListEndsWithSixtyFourSensors) {
    for (int i = 0; i < 70; ++i) Add(Fan("F", static_cast<std::uint8_t>(i)), 70);
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(list.quantity, 64);
}

TEST_F(ThresholdListTest, ListLacksRecordsAddedAfterTheWalk) {
    AddThree();
    ASSERT_EQ(GetAllThresholdInfo(&list), 0);
    Add(Fan("F2", 0x31), 70);
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(list.quantity, 3);
}

TEST_F(ThresholdListTest, ListNeedsARecordAndARepository) {
    EXPECT_EQ(GetAllThresholdInfo(nullptr), -1);
    EXPECT_EQ(GetAllThresholdInfo(&list), -1) << "empty repository";
    EXPECT_EQ(list.quantity, 0) << "cleared before";
}

TEST_F(ThresholdListTest, ListAfterAReleaseIsEmpty) {
    AddThree();
    ASSERT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(list.quantity, 0);
    EXPECT_EQ(GetThresholdInfo(3, kTemperature, &list), -1);
    EXPECT_EQ(list.quantity, 0);
    EXPECT_EQ(SetThresholdInfo(3, kTemperature, 0, 1.0), 0);
}

TEST_F(ThresholdListTest, AfterAThresholdFunctionNoSensorIsKnown) {
    AddThree();
    Add(Voltage("V1", 0x20), 165);
    ASSERT_EQ(GetAllThresholdInfo(&list), 0);
    const std::size_t requestsOfTheWalk = bmc.Count("Get SDR");
    FanInformation fans{};
    VoltageInformation voltages{};
    TemperatureInformation temperatures{};
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), -1);
        EXPECT_EQ(GetIpmiInfo(TALVANE_VOLTAGES, &voltages), -1);
        EXPECT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures), -1);
    }
    EXPECT_EQ(fans.quantity, 0);
    EXPECT_EQ(bmc.Count("Get SDR"), requestsOfTheWalk) << "the repository is not read again";
}

TEST_F(ThresholdListTest, AfterAListOfOneKindNoSensorIsKnown) {
    AddThree();
    EXPECT_EQ(GetThresholdInfo(29, kFan, &list), -1);
    EXPECT_EQ(list.quantity, 1);
    EXPECT_EQ(list.SensorThreshold[0].LowerNonCriticalThreshold, 150.0)
        << "of the fan's entry of the walk, the third";
    FanInformation fans{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), -1);
}

TEST_F(ThresholdListTest, ListOfOneEntityAndTypeAnswersFailureWhenFilled) {
    AddThree();
    EXPECT_EQ(GetThresholdInfo(3, kTemperature, &list), -1);
    EXPECT_EQ(list.quantity, 2);
    EXPECT_EQ(list.SensorThreshold[0].LowerNonCriticalThreshold, 30.0);
    EXPECT_EQ(list.SensorThreshold[1].LowerNonCriticalThreshold, 31.0);
    EXPECT_EQ(list.SensorThreshold[1].DeviceID, 3);
}

TEST_F(ThresholdListTest, ListOfOneEntityIsClearedToItsEnd) {
    AddThree();
    EXPECT_EQ(GetThresholdInfo(3, kTemperature, &list), -1);
    const auto* const end = reinterpret_cast<const unsigned char*>(&list + 1);
    const auto* const afterTheTwo =
        reinterpret_cast<const unsigned char*>(&list.SensorThreshold[2]);
    EXPECT_THAT(std::vector<unsigned char>(afterTheTwo, end), Each(0));
}

TEST_F(ThresholdListTest, ListOfOneEntityRepeatsTheWholeArguments) {
    AddThree();
    EXPECT_EQ(GetThresholdInfo(0x103, 0x101, &list), -1);
    EXPECT_EQ(list.quantity, 2) << "their low bytes select";
    EXPECT_EQ(list.SensorThreshold[0].DeviceID, 0x103);
    EXPECT_EQ(list.SensorThreshold[0].SensorType, 0x101);
}

TEST_F(ThresholdListTest, ListOfNoSensorIsEmpty) {
    AddThree();
    EXPECT_EQ(GetThresholdInfo(7, kTemperature, &list), -1);
    EXPECT_EQ(list.quantity, 0);
    EXPECT_EQ(GetThresholdInfo(3, kTemperature, nullptr), -1);
}

TEST_F(ThresholdListTest, ListsReadTheRepositoryOnce) {
    AddThree();
    ASSERT_EQ(GetAllThresholdInfo(&list), 0);
    bmc.ForgetRequests();
    EXPECT_EQ(GetThresholdInfo(3, kTemperature, &list), -1);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get SDR Repository Info"));
}

}  // namespace
