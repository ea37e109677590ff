// SPDX-License-Identifier: MIT
//
// The bundled machines: that each can be loaded, and what it is there to show.

#include <gtest/gtest.h>

#include <filesystem>

#include "Answers.h"
#include "Talvane.h"
#include "simulator/SimulatedServer.h"

namespace captures {
namespace {

Answers AnswersOf(const char* machine) {
    const sim::SimulatedServer server(std::filesystem::path(TALVANE_MACHINES) / machine);
    return AskEverything();
}

TEST(BundledMachinesTest, FullServerHasSomethingToSayToEveryCommand) {
    Answers answers = AnswersOf("full-server");
    constexpr std::pair<const char*, const char*> kExpected[] = {
        {"board.ProductName", "KB-27 Mainboard"},
        {"board.RomVersion", "NL7500-A12"},
        {"system.SysProductName", "Ketch 2700 R"},
        {"processors.quantity", "2"},
        {"cpu[1].cache[3].InstalledSize", "1024 KB"},
        {"memory.TotalSize", "2048"},
        {"bank[4].SlotNumber", "4"},
        {"bank[4].manufacturer", "Fell & Daughters"},
        {"ports.quantity", "10"},
        {"power.TotalNumber", "3"},
        {"power.RedundantNumber", "2"},
        {"ups.TotalNumber", "1"},
        {"fans.quantity", "5"},
        {"voltages.quantity", "3"},
        {"temperatures.quantity", "2"},
    };
    for (const auto& [field, text] : kExpected) EXPECT_EQ(answers[field], text) << field;
}

TEST(BundledMachinesTest, LegacyDmiIsReadWithoutCountingAsSmbios) {
    Answers answers = AnswersOf("legacy-dmi");
    EXPECT_EQ(answers["IsSmBiosSupport"], "0");
    EXPECT_EQ(answers["system.SysProductName"], "Dinghy 133");
    EXPECT_EQ(answers["bank[2].size"], "32 MB");
    EXPECT_EQ(answers["cpu[1].cache[3].MaxSize"], "");
}

TEST(BundledMachinesTest, NoSmbiosAnswersMinusOne) {
    Answers answers = AnswersOf("no-smbios");
    EXPECT_EQ(answers["IsSmBiosSupport"], "0");
    for (const char* command : kCommandNames)
        EXPECT_EQ(answers[std::string(command) + ".result"], "-1") << command;
}

TEST(BundledMachinesTest, TiredBmcIsReadForWhatItIs) {
    const sim::SimulatedServer server(std::filesystem::path(TALVANE_MACHINES) / "tired-bmc");
    TemperatureInformation temperatures{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures), 0);
    ASSERT_EQ(temperatures.quantity, 2) << "and not the dozen that it claims";
    EXPECT_STREQ(temperatures.temperature[0].CurrentTemperature, "61.00degree C");
    EXPECT_EQ(temperatures.temperature[0].sti.UpperCriticalThresholdValue, 80.0);
    EXPECT_STREQ(temperatures.temperature[1].CurrentTemperature, "0.00degree C");
    VoltageInformation voltages{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_VOLTAGES, &voltages), 0);
    ASSERT_EQ(voltages.quantity, 2);
    EXPECT_STREQ(voltages.voltage[0].CurrentVoltage, "3.00unspecified");
    EXPECT_STREQ(voltages.voltage[1].IdString, "");
    FanInformation fans{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    EXPECT_STREQ(fans.fan[0].speed, "25%");
    EXPECT_STREQ(fans.fan[1].speed, "3500RPM");
    unsigned char action = 0;
    int timeout = 0;
    int left = 0;
    EXPECT_EQ(GetWatchDogTimer(&action, &timeout, &left), 0);
    EXPECT_EQ(action, 1);
    EXPECT_EQ(left, 3600000);
}

TEST(BundledMachinesTest, QemuSmallIsReadOutOfTheSegment) {
    Answers answers = AnswersOf("qemu-small");
    EXPECT_EQ(answers["board.RomVendor"], "SeaBIOS");
    EXPECT_EQ(answers["processors.quantity"], "1");
}

TEST(BundledMachinesTest, QemuFourSocketsIsReadOutOfItsDump) {
    Answers answers = AnswersOf("qemu-4-sockets");
    EXPECT_EQ(answers["system.SysProductName"], "Quad 800");
    EXPECT_EQ(answers["processors.quantity"], "4");
    EXPECT_EQ(answers["bank[1].manufacturer"], "Harrow Memory");
}

TEST(BundledMachinesTest, QemuHighTableIsFoundAndOutOfReach) {
    Answers answers = AnswersOf("qemu-high-table");
    EXPECT_EQ(answers["IsSmBiosSupport"], "1");
    for (const char* command : kCommandNames)
        EXPECT_EQ(answers[std::string(command) + ".result"], "-1") << command;
}

TEST(BundledMachinesTest, QemuLegacyHasTheFirmwaresOwnTable) {
    Answers answers = AnswersOf("qemu-legacy");
    EXPECT_EQ(answers["board.RomVendor"], "Old Harrow BIOS");
    EXPECT_EQ(answers["cpu[1].manufacturer"], "Bochs");
}

}  // namespace
}  // namespace captures
