// SPDX-License-Identifier: MIT
//
// The exported IPMI functions on a machine without a controller.

#include <gtest/gtest.h>

#include <cstring>

#include "Talvane.h"
#include "simulator/SimulatedServer.h"

namespace {

class WithoutIpmiTest : public ::testing::Test {
protected:
    sim::SimulatedServer server;
};

TEST_F(WithoutIpmiTest, TheFirstQueryFailsAndEveryLaterOneIsBusy) {
    FanInformation fans{};
    EXPECT_EQ(IsIpmiSupport(), 0);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), -1);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 1);
    EXPECT_EQ(GetIpmiInfo(0, &fans), 1);

    unsigned char byte = 0;
    int number = 0;
    EXPECT_EQ(SetWatchDogTimer(1, 10000), -1) << "support is asked for before any flag";
    EXPECT_EQ(ResetWatchDogTimer(), -1);
    EXPECT_EQ(StopWatchDogTimer(), -1);
    EXPECT_EQ(GetWatchDogTimer(&byte, &number, &number), -1);
    EXPECT_EQ(GetBMCVersion(&byte, &byte), -1);
}

TEST_F(WithoutIpmiTest, ListsOfThresholdsAreNotCleared) {
    SensorThresholdInformation list;
    std::memset(&list, 0x5A, sizeof list);
    EXPECT_EQ(GetAllThresholdInfo(&list), -1);
    EXPECT_EQ(GetThresholdInfo(3, 1, &list), -1);
    EXPECT_EQ(list.quantity, 0x5A5A5A5A);
    EXPECT_EQ(list.SensorThreshold[63].readableFlag, 0x5A);
}

TEST_F(WithoutIpmiTest, TheDeviceIsTriedByEachPartOfTheObjectOnce) {
    EXPECT_EQ(IsIpmiSupport(), 0);
    EXPECT_EQ(IsIpmiSupport(), 0);
    EXPECT_EQ(server.GetLog().Count("open"), 3u);
}

TEST_F(WithoutIpmiTest, EveryOtherFunctionFails) {
    unsigned char byte = 0;
    int number = 0;
    SensorThresholdInformation thresholds{};
    EXPECT_EQ(SetWatchDogTimer(1, 10000), -1);
    EXPECT_EQ(ResetWatchDogTimer(), -1);
    EXPECT_EQ(StopWatchDogTimer(), -1);
    EXPECT_EQ(GetWatchDogTimer(&byte, &number, &number), -1);
    EXPECT_EQ(GetBMCVersion(&byte, &byte), -1);
    EXPECT_EQ(GetAllThresholdInfo(&thresholds), -1);
    EXPECT_EQ(GetThresholdInfo(3, 1, &thresholds), -1);
    EXPECT_EQ(SetThresholdInfo(3, 1, 0, 1.0), -1);
    EXPECT_EQ(SetThresholdInfo(3, 1, 0, 1.0), -1) << "not busy";
    FanInformation fans{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), -1) << "no flag was left set";
}

}  // namespace
