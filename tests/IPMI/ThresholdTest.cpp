// SPDX-License-Identifier: MIT
//
// Reading, writing and ordering thresholds.

#include <array>
#include <vector>

#include "support/FieldTable.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class ThresholdTest : public IpmiTest {
protected:
    SensorFormulaParameter tenths{0, 0, 1, 0, 0, -1};
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
};

TEST_F(ThresholdTest, ThresholdsAreReadInMaskOrder) {
    bmc.SetThresholds(0x30, {0xFF, {10, 20, 30, 40, 50, 60}});
    EXPECT_EQ(Sensors().GetSensorThreshold(0x30, tenths, raw, converted), 0);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get Sensor Thresholds 30"));
    ExpectNumbers({
        {"raw.readableFlag", raw.readableFlag, 0x3F},
        {"raw.LowerNonCriticalThreshold", raw.LowerNonCriticalThreshold, 10},
        {"raw.LowerCriticalThreshold", raw.LowerCriticalThreshold, 20},
        {"raw.LowerNonRecoverThreshold", raw.LowerNonRecoverThreshold, 30},
        {"raw.UpperNonCriticalThresholdValue", raw.UpperNonCriticalThresholdValue, 40},
        {"raw.UpperCriticalThresholdValue", raw.UpperCriticalThresholdValue, 50},
        {"raw.UpperNonRecoverThresholdValue", raw.UpperNonRecoverThresholdValue, 60},
        {"converted.readableFlag", converted.readableFlag, 0x3F},
        {"converted.LowerNonCriticalThreshold", converted.LowerNonCriticalThreshold, 1.0},
        {"converted.LowerCriticalThreshold", converted.LowerCriticalThreshold, 2.0},
        {"converted.LowerNonRecoverThreshold", converted.LowerNonRecoverThreshold, 3.0},
        {"converted.UpperNonCriticalThresholdValue", converted.UpperNonCriticalThresholdValue, 4.0},
        {"converted.UpperCriticalThresholdValue", converted.UpperCriticalThresholdValue, 5.0},
        {"converted.UpperNonRecoverThresholdValue", converted.UpperNonRecoverThresholdValue, 6.0},
    });
}

TEST_F(ThresholdTest, FieldsThatAreNotReadAreCleared) {
    raw.deviceID = raw.sensorType = raw.changeTrend = 7;
    raw.MaxThreshold = raw.MinThreshold = raw.settableFlag = 7;
    converted.MaxThreshold = converted.MinThreshold = 7;
    EXPECT_EQ(Sensors().GetSensorThreshold(0x30, tenths, raw, converted), 0);
    ExpectNumbers({
        {"raw.deviceID", raw.deviceID, 0},
        {"raw.sensorType", raw.sensorType, 0},
        {"raw.changeTrend", raw.changeTrend, 0},
        {"raw.MaxThreshold", raw.MaxThreshold, 0},
        {"raw.MinThreshold", raw.MinThreshold, 0},
        {"raw.settableFlag", raw.settableFlag, 0},
        {"converted.MaxThreshold", converted.MaxThreshold, 0},
        {"converted.MinThreshold", converted.MinThreshold, 0},
    });
}

TEST_F(ThresholdTest, ThresholdsOfNoSensorAreRefusedBeforeAnythingIsCleared) {
    raw.deviceID = 7;
    converted.MaxThreshold = 7;
    EXPECT_EQ(Sensors().GetSensorThreshold(0xFF, tenths, raw, converted), -1);
    EXPECT_EQ(raw.deviceID, 7);
    EXPECT_EQ(converted.MaxThreshold, 7);
    EXPECT_EQ(Sensors().SetSensorThreshold(0xFF, raw), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

TEST_F(ThresholdTest, ThresholdsWithoutAControllerReadZeroAndSucceed) {
    Sensors();
    InitOK = 0;
    raw.LowerCriticalThreshold = 7;
    EXPECT_EQ(Sensors().GetSensorThreshold(0x30, tenths, raw, converted), 0);
    EXPECT_EQ(raw.LowerCriticalThreshold, 0);
    EXPECT_EQ(Sensors().SetSensorThreshold(0x30, raw), 0);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

TEST_F(ThresholdTest, ThresholdsAreWrittenWithTheirMask) {
    raw.settableFlag = 0x2A;
    raw.LowerNonCriticalThreshold = 1;
    raw.LowerCriticalThreshold = 2;
    raw.LowerNonRecoverThreshold = 3;
    raw.UpperNonCriticalThresholdValue = 4;
    raw.UpperCriticalThresholdValue = 5;
    raw.UpperNonRecoverThresholdValue = 6;
    bmc.SetThresholds(0x30, {});
    EXPECT_EQ(Support().SetSensorThreshold(0x30, raw), 0);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Set Sensor Thresholds 30 2A 01 02 03 04 05 06"));
    EXPECT_THAT(bmc.Thresholds(0x30).values, ElementsAre(0, 2, 0, 4, 0, 6));
}

// The order: lower non-recoverable, critical, non-critical, upper non-critical, critical,
// non-recoverable.
using Values = std::array<int, 6>;

struct Order {
    const char* name;
    int mask;
    Values before;
    int which, value;
    Values after;
    int min = 0, max = 255;
};

class ThresholdOrderTest : public ::testing::TestWithParam<Order> {};

TEST_P(ThresholdOrderTest, OrderIsRepairedAroundTheChangedThreshold) {
    const Order& order = GetParam();
    sim::SimulatedServer server;
    IPMIsupport support;
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(order.before[i]); };
    SensorThresholdInfoRaw raw{};
    raw.settableFlag = static_cast<unsigned char>(order.mask);
    raw.MinThreshold = static_cast<unsigned char>(order.min);
    raw.MaxThreshold = static_cast<unsigned char>(order.max);
    raw.LowerNonRecoverThreshold = byte(0);
    raw.LowerCriticalThreshold = byte(1);
    raw.LowerNonCriticalThreshold = byte(2);
    raw.UpperNonCriticalThresholdValue = byte(3);
    raw.UpperCriticalThresholdValue = byte(4);
    raw.UpperNonRecoverThresholdValue = byte(5);
    EXPECT_EQ(support.SetThresholdOrder(raw, order.which, static_cast<unsigned char>(order.value)),
              0);
    EXPECT_EQ((Values{raw.LowerNonRecoverThreshold, raw.LowerCriticalThreshold,
                      raw.LowerNonCriticalThreshold, raw.UpperNonCriticalThresholdValue,
                      raw.UpperCriticalThresholdValue, raw.UpperNonRecoverThresholdValue}),
              order.after);
    EXPECT_EQ(raw.settableFlag, order.mask);
}

constexpr Values kStart{10, 20, 30, 100, 110, 120};

INSTANTIATE_TEST_SUITE_P(
    Thresholds, ThresholdOrderTest,
    ::testing::Values(
        Order{"PushesDown", 0x3F, kStart, 0, 5, {3, 4, 5, 100, 110, 120}},
        Order{"PushesUpToTheFirstInOrder", 0x3F, kStart, 3, 115, {10, 20, 30, 115, 116, 120}},
        Order{"PushesUpToTheEnd", 0x3F, kStart, 3, 200, {10, 20, 30, 200, 201, 202}},
        Order{"LeavesTies", 0x3F, kStart, 1, 30, {10, 30, 30, 100, 110, 120}},
        Order{"LeavesTiesBelow", 0x3F, kStart, 0, 20, {10, 20, 20, 100, 110, 120}},
        Order{"LeavesADisorderAfterATie",
              0x3F,
              {20, 10, 30, 100, 110, 120},
              0,
              10,
              {20, 10, 10, 100, 110, 120}},
        Order{"PushesTiesAfterTheMovedOne",
              0x3F,
              {20, 20, 30, 100, 110, 120},
              0,
              15,
              {13, 14, 15, 100, 110, 120}},
        Order{"LeavesATieThatAMovedOneMakesBelow",
              0x3F,
              {14, 20, 30, 100, 110, 120},
              0,
              15,
              {14, 14, 15, 100, 110, 120}},
        Order{"LeavesATieThatAMovedOneMakesAbove",
              0x3F,
              {10, 20, 30, 100, 110, 116},
              3,
              115,
              {10, 20, 30, 115, 116, 116}},
        Order{"LeavesADisorderAboveATie",
              0x3F,
              {10, 20, 30, 25, 110, 120},
              1,
              30,
              {10, 30, 30, 25, 110, 120}},
        Order{"GoesOnDownPastAPairInOrder",
              0x3F,
              {200, 10, 20, 100, 110, 120},
              3,
              15,
              {9, 10, 14, 15, 110, 120}},
        Order{"GoesOnUpPastAPairInOrder",
              0x3F,
              {10, 20, 30, 100, 200, 5},
              0,
              150,
              {10, 20, 150, 151, 200, 201}},
        Order{
            "PushesBothWays", 0x3F, {10, 50, 30, 40, 110, 120}, 0, 45, {10, 44, 45, 46, 110, 120}},
        Order{"StopsAtTheMinimum", 0x3F, kStart, 0, 5, {8, 8, 5, 100, 110, 120}, 8},
        Order{"StopsAtZero", 0x3F, kStart, 0, 1, {0, 0, 1, 100, 110, 120}},
        Order{"StopsAtTheMaximum", 0x3F, kStart, 3, 254, {10, 20, 30, 254, 255, 255}},
        Order{"StopsAtALowerMaximum", 0x3F, kStart, 4, 130, {10, 20, 30, 100, 130, 125}, 0, 125},
        Order{"PushesLowerPastUpper", 0x3F, kStart, 2, 125, {125, 126, 127, 128, 129, 130}},
        Order{"PushesUpperPastLower", 0x3F, kStart, 5, 9, {4, 5, 6, 7, 8, 9}},
        Order{"ChangesTheFirst", 0x3F, kStart, 2, 5, {5, 20, 30, 100, 110, 120}},
        Order{"ChangesTheLast", 0x3F, kStart, 5, 200, {10, 20, 30, 100, 110, 200}},
        Order{"MaskZeroChangesNothing", 0x00, kStart, 0, 5, kStart},
        Order{"DropsAValueThatIsNotSettable", 0x3E, kStart, 0, 5, kStart},
        Order{"DropsAnUnknownThreshold", 0x3F, kStart, 6, 5, kStart},
        Order{"DropsANegativeThreshold", 0x3F, kStart, -1, 5, kStart},
        Order{"RepairsFromTheFirstAfterADroppedValue",
              0x0A,
              {0, 50, 60, 40, 0, 0},
              0,
              5,
              {0, 50, 60, 51, 0, 0}},
        Order{"PassesOverThoseNotSettable",
              0x09,
              {90, 95, 30, 100, 10, 5},
              0,
              120,
              {90, 95, 120, 121, 10, 5}},
        Order{"ChangesASingleSettableOne", 0x10, kStart, 4, 1, {10, 20, 30, 100, 1, 120}}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
