// SPDX-License-Identifier: MIT
//
// An agent may put methods of its own in front of the library's. This program's methods note how
// the library calls them: the order in which the tables are built, and what setting a threshold
// hands on.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "Talvane.h"
#include "simulator/SimulatedServer.h"
#include "support/OpenIpmi.h"

namespace {

using ::testing::ElementsAre;

std::vector<std::string> calls;
std::map<std::string, int> results;  // by call; the others answer 0

int Note(const char* call) {
    calls.push_back(call);
    return results[call];
}

std::vector<int> matches;           // walk entries of the sensors that a setting reaches
std::vector<int> formulaIndexes;    // those whose formula was asked for
SensorThresholdInfoRaw known{};     // the thresholds of every sensor
SensorThresholdInfoRaw received{};  // what the library handed on to be ordered

}  // namespace

int Sensor::GetSDRRepositoryInfo(int& recordCount, int& sdrVersion) {
    recordCount = 400;
    sdrVersion = 0x51;
    return Note("info");
}
int Sensor::GetSensorNumbers(int) {
    return Note("walk");
}
int Sensor::GetFanSensorsInfo(int) {
    return Note("fans");
}
int Sensor::GetVoltSensorsInfo(int) {
    return Note("voltages");
}
int Sensor::GetTemSensorsInfo(int) {
    return Note("temperatures");
}
int Sensor::GetProcessorSensorInfo(int) {
    return Note("processors");
}
int IPMIsupport::GetSensorNumberInfo(unsigned char, unsigned char, int, SensorNumberInfo& info) {
    for (const int match : matches) info.sensorOrder[info.quantity++] = match;
    return 0;
}
int IPMIsupport::GetThreshold(int, SensorThresholdInfoRaw& raw, SensorThresholdInfoConverted&) {
    raw = known;
    return Note("thresholds");
}
int IPMIsupport::GetSensorFormulaParameter(unsigned char index, SensorFormulaParameter&) {
    formulaIndexes.push_back(index);
    return 0;
}
int IPMIsupport::SetThresholdOrder(SensorThresholdInfoRaw& raw, int, unsigned char) {
    received = raw;
    return Note("order");
}
int IPMIsupport::GetValueConversion(SensorFormulaParameter, unsigned char& raw, double value) {
    raw = static_cast<unsigned char>(value);
    return Note("value");
}
int IPMIsupport::SetSensorThreshold(unsigned char, SensorThresholdInfoRaw) {
    return 0;
}

namespace {

class ReplacedMethodsTest : public ::testing::Test {
protected:
    ReplacedMethodsTest() { server.GetBmc(); }

    sim::SimulatedServer server;
};

TEST_F(ReplacedMethodsTest, TablesAreBuiltInTheOrderFansVoltagesTemperaturesProcessors) {
    IPMIsupport support;
    EXPECT_EQ(support.GetSensorInfo(), 0);
    EXPECT_THAT(calls,
                ElementsAre("info", "walk", "fans", "voltages", "temperatures", "processors"));
}

TEST_F(ReplacedMethodsTest, TheFirstStepThatFailsEndsTheBuilding) {
    IPMIsupport support;
    const std::vector<std::string> steps{"info",     "walk",         "fans",
                                         "voltages", "temperatures", "processors"};
    for (std::size_t failing = 0; failing < steps.size(); ++failing) {
        calls.clear();
        results = {{steps[failing], -1}};
        EXPECT_EQ(support.GetSensorInfo(), -1);
        EXPECT_THAT(calls, ::testing::ElementsAreArray(steps.data(), failing + 1));
    }
}

TEST_F(ReplacedMethodsTest, ASettingOrdersTheThresholdsWithinTheWholeRangeOfARawByte) {
    matches = {0};
    known.deviceID = 3;
    known.MinThreshold = 77;
    known.MaxThreshold = 88;
    ASSERT_EQ(SetThresholdInfo(3, 1, THRESHOLD_LOWER_CRITICAL, 1.0), 0);
    EXPECT_EQ(received.deviceID, 3);
    EXPECT_EQ(received.MinThreshold, 0);
    EXPECT_EQ(received.MaxThreshold, 255);
}

TEST_F(ReplacedMethodsTest, ASettingAsksForTheFormulaByTheLowByteOfTheIndex) {
    matches = {0, 127, 128, 200, 255, 256, 300};
    ASSERT_EQ(SetThresholdInfo(3, 1, THRESHOLD_LOWER_CRITICAL, 1.0), 0);
    EXPECT_THAT(formulaIndexes, ElementsAre(0, 127, 128, 200, 255, 0, 44));
}

TEST_F(ReplacedMethodsTest, TheFirstStepOfASettingThatFailsEndsIt) {
    matches = {0};
    ASSERT_EQ(SetThresholdInfo(3, 1, THRESHOLD_LOWER_CRITICAL, 1.0), 0);
    EXPECT_THAT(calls, ElementsAre("info", "walk", "thresholds", "value", "order"));
    for (const char* const step : {"info", "thresholds", "value", "order"}) {
        calls.clear();
        results = {{step, -1}};
        EXPECT_EQ(SetThresholdInfo(3, 1, THRESHOLD_LOWER_CRITICAL, 1.0), -1) << step;
        EXPECT_EQ(calls.back(), step);
    }
    results.clear();
    EXPECT_EQ(SetThresholdInfo(3, 1, THRESHOLD_LOWER_CRITICAL, 1.0), 0) << "not busy";
}

TEST_F(ReplacedMethodsTest, ASensorWithoutThresholdsIsLeftOutOfAList) {
    matches = {0, 1};
    static SensorThresholdInformation list;
    EXPECT_EQ(GetThresholdInfo(3, 1, &list), -1) << "as always";
    EXPECT_EQ(list.quantity, 2);
    results = {{"thresholds", -1}};
    EXPECT_EQ(GetThresholdInfo(3, 1, &list), -1);
    EXPECT_EQ(list.quantity, 0);
}

}  // namespace
