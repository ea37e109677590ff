// SPDX-License-Identifier: MIT
//
// Voltage and temperature probes: counted, and never found by their location.
#include "support/FieldTable.h"
#include "support/SmBiosTest.h"

namespace {

class ProbeTest : public SmBiosTest {
protected:
    void AddProbes(int count, std::uint8_t type) {
        for (int i = 0; i < count; ++i)
            table.Add(type, handle++, 22)
                .String(4, "probe")
                .Byte(5, 0x7F)
                .Word(6, 12600)
                .Word(8, 11400)
                .Word(20, 12000);
    }

    std::uint16_t handle = 0x1A00;
};

TEST_F(ProbeTest, AnyVoltageProbeQueryAnswersMinusOne) {
    AddProbes(3, 26);
    Open();
    for (int location = -1; location < 257; ++location) {
        EXPECT_EQ(Ask(&SmBios::GetVoltageDescription, location, 32), Missing()) << location;
        EXPECT_EQ(Ask(&SmBios::GetVoltageStatus, location), Missing()) << location;
        EXPECT_EQ(Ask(&SmBios::GetVoltageCurrent, location), Missing()) << location;
        EXPECT_EQ(Ask(&SmBios::GetVoltageMax, location), Missing()) << location;
        EXPECT_EQ(Ask(&SmBios::GetVoltageMin, location), Missing()) << location;
    }
}

TEST_F(ProbeTest, AnyTemperatureProbeQueryAnswersMinusOne) {
    AddProbes(3, 28);
    Open();
    for (int location = -1; location < 257; ++location) {
        EXPECT_EQ(Ask(&SmBios::GetTemperatureDescription, location, 32), Missing()) << location;
        EXPECT_EQ(Ask(&SmBios::GetTemperatureStatus, location), Missing()) << location;
        EXPECT_EQ(Ask(&SmBios::GetTemperatureCurrent, location), Missing()) << location;
    }
}

TEST_F(ProbeTest, QuantitiesCountTheStructuresOfEachKind) {
    Open();
    EXPECT_EQ(reader->GetVoltageProbeQuantity(), 0);
    EXPECT_EQ(reader->GetTemperatureProbeQuantity(), 0);
    AddProbes(2, 26);
    AddProbes(5, 28);
    AddProbes(1, 29);
    Open();
    EXPECT_EQ(reader->GetVoltageProbeQuantity(), 2);
    EXPECT_EQ(reader->GetTemperatureProbeQuantity(), 5);
}

TEST_F(ProbeTest, QuantitiesStopAt127) {
    AddProbes(127, 26);
    AddProbes(127, 28);
    Open();
    EXPECT_EQ(reader->GetVoltageProbeQuantity(), 127);
    EXPECT_EQ(reader->GetTemperatureProbeQuantity(), 127);
    AddProbes(10, 26);
    AddProbes(10, 28);
    Open();
    EXPECT_EQ(reader->GetVoltageProbeQuantity(), 127);
    EXPECT_EQ(reader->GetTemperatureProbeQuantity(), 127);
}

TEST(LocationCodesTest, CodesAreThoseOfTheStandard) {
    ExpectNumbers({
        {"TnV_OTHER", SmBios::TnV_OTHER, 1},
        {"TnV_UNKNOWN", SmBios::TnV_UNKNOWN, 2},
        {"TnV_PROCESSOR", SmBios::TnV_PROCESSOR, 3},
        {"TnV_DISK", SmBios::TnV_DISK, 4},
        {"TnV_PERIPHERAL_BAY", SmBios::TnV_PERIPHERAL_BAY, 5},
        {"TnV_SYSTEM_MANAGEMENT_MODULE", SmBios::TnV_SYSTEM_MANAGEMENT_MODULE, 6},
        {"TnV_MOTHER_BOARD", SmBios::TnV_MOTHER_BOARD, 7},
        {"TnV_MEMORY", SmBios::TnV_MEMORY, 8},
        {"TnV_PROCESSOR_MODULE", SmBios::TnV_PROCESSOR_MODULE, 9},
        {"TnV_POWER_UNIT", SmBios::TnV_POWER_UNIT, 10},
        {"TnV_ADDIN_CARD", SmBios::TnV_ADDIN_CARD, 11},
        {"TnV_FRONT_PANEL_BOARD", SmBios::TnV_FRONT_PANEL_BOARD, 12},
        {"TnV_BACK_PANEL_BOARD", SmBios::TnV_BACK_PANEL_BOARD, 13},
        {"TnV_POWER_SYSTEM_BOARD", SmBios::TnV_POWER_SYSTEM_BOARD, 14},
        {"TnV_DRIVE_BACK_PLANE", SmBios::TnV_DRIVE_BACK_PLANE, 15},
    });
}

}  // namespace
