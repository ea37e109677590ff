// SPDX-License-Identifier: MIT
//
// Cooling devices: count, description, status and speed.
#include "support/CodeTexts.h"
#include "support/SmBiosTest.h"

namespace {

class CoolingTest : public SmBiosTest {
protected:
    sim::SmbiosStructure& AddFan(int typeAndStatus = 3, std::uint8_t length = 15) {
        return table.Add(27, handle++, length).Byte(6, static_cast<std::uint8_t>(typeAndStatus));
    }

    std::uint16_t handle = 0x1B00;
};

TEST_F(CoolingTest, EveryTypeHasItsDescription) {
    const CodeTexts types{{{1, "Other"},
                           {2, "Unknown"},
                           {3, "FAN"},
                           {4, "Centrifugal Blower"},
                           {5, "Chip Fan"},
                           {6, "Cabinet Fan"},
                           {7, "Power Supply Fan"},
                           {8, "Heat Pipe"},
                           {9, "Integrated Refrigeration"},
                           {16, "Active Cooling"},
                           {17, "Passive Cooling"}},
                          "error"};
    for (int code = 0; code < 256; ++code) {
        NewTable();
        AddFan(code);
        Open();
        EXPECT_EQ(Ask(&SmBios::GetFanDescription, 1), Terminated(types.Of(code & 0x1F))) << code;
    }
}

TEST_F(CoolingTest, EveryFanReportsTheStatusError) {
    for (int code = 0; code < 256; ++code) {
        NewTable();
        AddFan(code);
        Open();
        EXPECT_EQ(Ask(&SmBios::GetFanStatus, 1), Terminated("error")) << code;
    }
}

TEST_F(CoolingTest, FanWithStatusBits011ReportsError) {
    AddFan(0x63);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetFanStatus, 1), Terminated("error"));
    EXPECT_EQ(Ask(&SmBios::GetFanDescription, 1), Terminated("FAN"));
}

TEST_F(CoolingTest, SpeedIsGivenInRpm) {
    const std::vector<std::pair<int, std::string>> speeds = {
        {0, "0 rpm"},          {4800, "4800 rpm"},
        {0x7FFF, "32767 rpm"}, {0x8001, "32769 rpm"},
        {0xFFFF, "65535 rpm"}, {0x8000, "Unknown or the FAN is non-rotating"}};
    for (const auto& [speed, text] : speeds) {
        NewTable();
        AddFan().Word(12, static_cast<std::uint16_t>(speed));
        Open();
        EXPECT_EQ(Ask(&SmBios::GetFanSpeed, 1), Terminated(text)) << speed;
    }
}

TEST_F(CoolingTest, FanWhoseStructureIs12BytesLongHasNoSpeed) {
    AddFan(3, 12).String("\x10\x10");
    AddFan(3, 7);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetFanSpeed, 1), Refused("SmBios can not supply this information"));
    EXPECT_EQ(Ask(&SmBios::GetFanSpeed, 2), Refused("SmBios can not supply this information"));
}

TEST_F(CoolingTest, FanWhoseStructureIs13BytesLongHasTheLowByteOfItsSpeed) {
    AddFan(3, 13).Byte(12, 200).String("\x10");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetFanSpeed, 1), Terminated("200 rpm"));
}

TEST_F(CoolingTest, FansAreCountedFromOne) {
    for (int i = 1; i <= 3; ++i) AddFan().Word(12, static_cast<std::uint16_t>(1000 * i));
    Open();
    EXPECT_EQ(Ask(&SmBios::GetFanSpeed, 1), Terminated("1000 rpm"));
    EXPECT_EQ(Ask(&SmBios::GetFanSpeed, 3), Terminated("3000 rpm"));
}

TEST_F(CoolingTest, MissingFanAnswersMinusOne) {
    AddFan();
    Open();
    for (const int fan : {0, 2, 256}) {
        EXPECT_EQ(Ask(&SmBios::GetFanSpeed, fan), Missing());
        EXPECT_EQ(Ask(&SmBios::GetFanStatus, fan), Missing());
        EXPECT_EQ(Ask(&SmBios::GetFanDescription, fan), Missing());
    }
}

TEST_F(CoolingTest, QuantityStopsAt63) {
    Open();
    EXPECT_EQ(reader->GetFanQuantity(), 0);
    for (int i = 0; i < 62; ++i) AddFan();
    Open();
    EXPECT_EQ(reader->GetFanQuantity(), 62);
    AddFan();
    Open();
    EXPECT_EQ(reader->GetFanQuantity(), 63);
    AddFan();
    Open();
    EXPECT_EQ(reader->GetFanQuantity(), 63);
}

}  // namespace
