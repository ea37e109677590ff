// SPDX-License-Identifier: MIT
//
// Which commands may change the state of the BMC or of the machine.

#include <gmock/gmock.h>

#include "bridge/StateChange.h"

namespace {

using bridge::MayChangeState;

TEST(StateChangeTest, WhatAgentsAskDayAndNightChangesNothing) {
    struct {
        const char* name;
        std::uint8_t netFn;
        std::uint8_t command;
    } const readings[] = {
        {"Get Chassis Status", 0x00, 0x01},
        {"Get Sensor Threshold", 0x04, 0x27},
        {"Get Sensor Reading", 0x04, 0x2D},
        {"Get Device ID", 0x06, 0x01},
        {"Reset Watchdog Timer", 0x06, 0x22},
        {"Get Watchdog Timer", 0x06, 0x25},
        {"Read FRU Data", 0x0A, 0x11},
        {"Reserve SDR Repository", 0x0A, 0x22},
        {"Get SDR", 0x0A, 0x23},
        {"Get SEL Entry", 0x0A, 0x43},
    };
    for (const auto& reading : readings)
        EXPECT_FALSE(MayChangeState(reading.netFn, reading.command)) << reading.name;
}

TEST(StateChangeTest, WhatSetsSomethingMayChangeState) {
    struct {
        const char* name;
        std::uint8_t netFn;
        std::uint8_t command;
    } const changes[] = {
        {"Chassis Control", 0x00, 0x02},
        {"Set System Boot Options", 0x00, 0x08},
        {"Set Sensor Threshold", 0x04, 0x26},
        {"Cold Reset", 0x06, 0x02},
        {"Set Watchdog Timer", 0x06, 0x24},
        {"Set User Access", 0x06, 0x43},
        {"Set User Password", 0x06, 0x47},
        {"Master Write-Read", 0x06, 0x52},
        {"Write FRU Data", 0x0A, 0x12},
        {"Clear SDR Repository", 0x0A, 0x27},
        {"Clear SEL", 0x0A, 0x47},
        {"Set LAN Configuration", 0x0C, 0x01},
        {"any of the firmware", 0x08, 0x01},
        {"any of a group", 0x2C, 0x01},
        {"any of a manufacturer's", 0x30, 0x01},
    };
    for (const auto& change : changes)
        EXPECT_TRUE(MayChangeState(change.netFn, change.command)) << change.name;
}

// A command's number means something only together with its network function.
TEST(StateChangeTest, ANumberThatReadsInOneNetworkFunctionMayChangeStateInAnother) {
    EXPECT_FALSE(MayChangeState(0x04, 0x27));
    EXPECT_TRUE(MayChangeState(0x0A, 0x27));
}

}  // namespace
