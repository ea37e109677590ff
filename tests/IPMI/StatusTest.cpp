// SPDX-License-Identifier: MIT
//
// States of discrete sensors, as bits and as texts.

#include <cstring>

#include "IPMI/EventCodeTable.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class StatusTest : public IpmiTest {
protected:
    Answer Describe(int code, int state) {
        return AskWith(Buffer::kMarked, [&](char* out) {
            return Sensors().GetDeviceStatus(static_cast<unsigned char>(code),
                                             static_cast<unsigned char>(state), out);
        });
    }
};

TEST_F(StatusTest, StatesAreTheThirdByteForDiscreteTypes) {
    bmc.SetStates(0x30, 0x12, 0x34);
    for (int code = 0; code < 256; ++code) {
        unsigned char state = 0x77;
        EXPECT_EQ(Sensors().GetSensorStatus(0x30, static_cast<unsigned char>(code), state), 0);
        const bool discrete = (code >= 2 && code <= 11) || code == 0x6F;
        EXPECT_EQ(state, discrete ? 0x12 : 0) << code;
    }
    EXPECT_EQ(bmc.Requests()[0].Text(), "Get Sensor Reading 30") << "asked for in any case";
    EXPECT_THAT(bmc.Requests(), SizeIs(256));
}

TEST_F(StatusTest, WithoutAControllerThereIsNoState) {
    Sensors();
    InitOK = 0;
    unsigned char state = 0x77;
    EXPECT_EQ(Sensors().GetSensorStatus(0x30, 10, state), -1);
    EXPECT_EQ(state, 0x77);
}

struct Row {
    int code, offset;
    const char* text;
};

// All texts, as agents know them.
constexpr Row kRows[] = {
    {1, 0, "Lower Non-critical - going low"},
    {1, 1, "Lower Non-critical - going high"},
    {1, 2, "Lower critical - going low"},
    {1, 3, "Lower critical - going high"},
    {1, 4, "Lower Non-recover - going low"},
    {1, 5, "Lower Non-recover - going high"},
    {1, 6, "Uper Non-recover - going low"},
    {1, 7, "Uper Non-recover - going gigh"},
    {1, 8, "Uper critical - going low"},
    {1, 9, "Uper critical - going high"},
    {1, 10, "Uper Non-critical - going low"},
    {1, 11, "Uper Non-critical - going high"},
    {2, 0, "idle"},
    {2, 1, "active"},
    {2, 2, "busy"},
    {3, 0, "State Diasserted"},
    {3, 1, "State Asserted"},
    {4, 0, "Predictive Failure Diasserted"},
    {4, 1, "Predictive Failure Asserted"},
    {5, 0, "Limit Not Exceeded"},
    {5, 1, "Limit Exceeded"},
    {6, 0, "Performance Met"},
    {6, 1, "Performance Lags"},
    {7, 0, "OK"},
    {7, 1, "transition to Non-Critical from OK"},
    {7, 2, "transition to Critical from less servere"},
    {7, 3, "transition to Non-recoverable from less servere"},
    {7, 4, "transition to Non-Critical from more servere"},
    {7, 5, "transition to Critical from Non-recoverable"},
    {7, 6, "Non-recoverable"},
    {7, 7, "Monitor"},
    {7, 8, "Informational"},
    {8, 0, "Device Removed / Device Absent"},
    {8, 1, "Device Inserted / Device Present"},
    {9, 0, "Device Disabled"},
    {9, 1, "Device Enabled"},
    {10, 0, "Running"},
    {10, 1, "In Test"},
    {10, 2, "Power Off"},
    {10, 3, "On Line"},
    {10, 4, "Off Line"},
    {10, 5, "Off Duty"},
    {10, 6, "Degraded"},
    {10, 7, "Power save"},
    {10, 8, "Install Error"},
};

const char* TextOf(int code, int offset) {
    for (const Row& row : kRows)
        if (row.code == code && row.offset == offset) return row.text;
    return "";
}

TEST_F(StatusTest, TheTableHoldsEveryTextAndIsEmptyElsewhere) {
    for (int code = 1; code <= 12; ++code)
        for (int offset = 0; offset < 16; ++offset) {
            char row[64] = {};
            std::strcpy(row, TextOf(code, offset));
            EXPECT_EQ(std::memcmp(EventDesc[(code - 1) * 16 + offset], row, sizeof row), 0)
                << code << ", " << offset;
        }
}

TEST_F(StatusTest, EachBitOfEachDiscreteTypeHasItsText) {
    for (int code = 2; code <= 11; ++code)
        for (int offset = 0; offset < 8; ++offset)
            EXPECT_EQ(Describe(code, 1 << offset), Terminated(TextOf(code, offset)))
                << code << ", " << offset;
}

TEST_F(StatusTest, TheLowestBitCounts) {
    EXPECT_EQ(Describe(10, 0x09), Terminated("Running"));
    EXPECT_EQ(Describe(10, 0x08), Terminated("On Line"));
    EXPECT_EQ(Describe(9, 0x02), Terminated("Device Enabled"));
    EXPECT_EQ(Describe(9, 0xFE), Terminated("Device Enabled"));
}

TEST_F(StatusTest, NoBitIsTheEmptyText) {
    for (const int code : {0, 1, 7, 0x6F, 0x7F})
        EXPECT_EQ(Describe(code, 0), Terminated("")) << code;
}

TEST_F(StatusTest, AllBitsAreRefused) {
    EXPECT_EQ(Describe(10, 0xFF), Missing());
}

TEST_F(StatusTest, OtherTypesHaveOneTextOrNone) {
    EXPECT_EQ(Describe(0, 1), Terminated("Unspecified"));
    EXPECT_EQ(Describe(0x6F, 0x80), Terminated("Sensor-specific"));
    EXPECT_EQ(Describe(0x7F, 1), Terminated("OEM"));
    EXPECT_EQ(Describe(0xFF, 1), Terminated("OEM"));
    for (const int code : {1, 11, 12, 0x6E, 0x70, 0x7E})
        EXPECT_EQ(Describe(code, 1), Terminated("")) << code;
}

TEST_F(StatusTest, ANullPointerIsRefused) {
    EXPECT_EQ(Sensors().GetDeviceStatus(10, 1, nullptr), -1);
}

class StatusDescriptionTest : public IpmiTest {};

TEST_F(StatusDescriptionTest, DescriptionIsTheSensorsCurrentState) {
    Add(Fan("F", 0x30).Event(10), 70);
    Add(Voltage("V", 0x20).Event(9), 70);
    Add(Temperature("T", 0x10).Event(7), 70);
    bmc.SetStates(0x30, 0x40);
    bmc.SetStates(0x20, 0x02);
    bmc.SetStates(0x10, 0x01);
    Loaded();
    bmc.ForgetRequests();
    EXPECT_EQ(Ask(&Sensor::GetFanStatusDescription, 0), Terminated("Degraded"));
    EXPECT_EQ(Ask(&Sensor::GetVoltageStatusDescription, 0), Terminated("Device Enabled"));
    EXPECT_EQ(Ask(&Sensor::GetTemperatureStatusDescription, 0), Terminated("OK"));
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get Sensor Reading 30", "Get Sensor Reading 20",
                                                "Get Sensor Reading 10"));
}

TEST_F(StatusDescriptionTest, DescriptionIsEmptyForThresholdSensorsAndForAllBits) {
    Add(Fan("F", 0x30), 70);
    Add(Voltage("V", 0x20).Event(9), 70);
    bmc.SetStates(0x30, 0x01);
    bmc.SetStates(0x20, 0xFF);
    Loaded();
    EXPECT_EQ(Ask(&Sensor::GetFanStatusDescription, 0), Terminated(""));
    EXPECT_EQ(Ask(&Sensor::GetVoltageStatusDescription, 0), Terminated(""));
}

TEST_F(StatusDescriptionTest, DescriptionIsEmptyWithoutAController) {
    Add(Fan("F", 0x30).Event(10), 70);
    bmc.SetStates(0x30, 0x01);
    Loaded();
    InitOK = 0;
    EXPECT_EQ(Ask(&Sensor::GetFanStatusDescription, 0), Terminated(""));
}

TEST_F(StatusDescriptionTest, ANullPointerIsRefusedBeforeARequest) {
    Add(Fan("F", 0x30).Event(10), 70);
    Add(Voltage("V", 0x20).Event(9), 70);
    Add(Temperature("T", 0x10).Event(7), 70);
    Loaded();
    bmc.ForgetRequests();
    EXPECT_EQ(Sensors().GetFanStatusDescription(0, nullptr), -1);
    EXPECT_EQ(Sensors().GetVoltageStatusDescription(0, nullptr), -1);
    EXPECT_EQ(Sensors().GetTemperatureStatusDescription(0, nullptr), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

}  // namespace
