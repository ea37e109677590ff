// SPDX-License-Identifier: MIT
//
// An agent may put its own IsIpmiSupport in front of the library's. This program's says that there
// is IPMI where there is none: the functions look for themselves whether it is ready, and read
// nothing when it is not.

#include <gtest/gtest.h>

#include <cstring>

#include "Talvane.h"
#include "simulator/SimulatedServer.h"
#include "support/OpenIpmi.h"

namespace {

int reads = 0;

}  // namespace

int IsIpmiSupport(void) {
    return 1;
}

int IPMIsupport::GetSensorInfo() {
    ++reads;
    return 0;
}

int IPMIsupport::GetSDRRepositoryInfo(int&, int&) {
    ++reads;
    return 0;
}

namespace {

class NotReadyTest : public ::testing::Test {
protected:
    NotReadyTest() { std::memset(&list, 0x5A, sizeof list); }

    sim::SimulatedServer server;
    SensorThresholdInformation list;
};

TEST_F(NotReadyTest, ASensorQueryFailsWithoutStayingBusy) {
    FanInformation fans{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), -1);
    EXPECT_EQ(GetIpmiInfo(0, nullptr), -1);
    EXPECT_EQ(reads, 0);
}

TEST_F(NotReadyTest, ListsOfThresholdsAreClearedAndFail) {
    EXPECT_EQ(GetAllThresholdInfo(&list), -1);
    EXPECT_EQ(list.quantity, 0);
    EXPECT_EQ(list.SensorThreshold[63].readableFlag, 0);
    std::memset(&list, 0x5A, sizeof list);
    EXPECT_EQ(GetThresholdInfo(3, 1, &list), -1);
    EXPECT_EQ(list.quantity, 0);
    EXPECT_EQ(list.SensorThreshold[63].readableFlag, 0);
    EXPECT_EQ(reads, 0);
}

TEST_F(NotReadyTest, AChangeOfThresholdsFailsWithoutStayingBusy) {
    EXPECT_EQ(SetThresholdInfo(3, 1, 0, 1.0), -1);
    EXPECT_EQ(SetThresholdInfo(3, 1, 0, 1.0), -1);
    EXPECT_EQ(reads, 0);
}

}  // namespace
