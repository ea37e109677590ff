// SPDX-License-Identifier: MIT
//
// What of the reader an agent can call: seen through the header alone, without the private members
// opened to the other tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <optional>

#include "SmBios/PrivateCalls.h"
#include "SmBios/SmBios.h"
#include "simulator/SimulatedServer.h"
#include "simulator/machine/SmbiosTable.h"

namespace {

static_assert(std::ranges::count(kPrivateCalls<SmBios>, true) == 0,
              "GetItem, trim and the getters of single caches and memory parts are private");

// A reader of a table with a structure that no getter reads.
class AccessTest : public ::testing::Test {
protected:
    AccessTest() {
        sim::SmbiosTable table;
        table.Add(SmBios::TYPE_OEM_STRINGS, 1, 4);
        server.GetMemory().PlaceSmbios(table.Image());
        reader.emplace();
    }

    // Each of the getters, called with these arguments, answers so.
    template <class Getter, std::size_t N, class... Arguments>
    void ExpectEach(int answer, Getter (&getters)[N], Arguments... arguments) {
        for (std::size_t i = 0; i < N; ++i)
            EXPECT_EQ(((*reader).*getters[i])(arguments...), answer) << "getter " << i;
    }

    sim::SimulatedServer server;
    std::optional<SmBios> reader;
    char text[64] = {};
};

TEST_F(AccessTest, StateOfTheReaderIsPublic) {
    EXPECT_EQ(reader->IsInitOK(), 1);
    EXPECT_EQ(reader->IsMatchSmBios(), 1);
    EXPECT_EQ(reader->IsMatchDMI(), 0);
}

TEST_F(AccessTest, CountsArePublic) {
    constexpr int (SmBios::*kCounts[])() = {
        &SmBios::GetProcessorQuantity,        &SmBios::GetProcessorVirtualQuantity,
        &SmBios::GetMemoryTotalSize,          &SmBios::GetPortQuantity,
        &SmBios::GetPSRedundantQuantity,      &SmBios::GetFanQuantity,
        &SmBios::GetOnBoardDevQuantity,       &SmBios::GetVoltageProbeQuantity,
        &SmBios::GetTemperatureProbeQuantity,
    };
    ExpectEach(0, kCounts);
    EXPECT_EQ(reader->GetPSQuantity(15), 0);
}

TEST_F(AccessTest, BoundedTextsArePublic) {
    constexpr int (SmBios::*kOfTheMachine[])(char*, unsigned) = {
        &SmBios::GetSysManufacturer,
        &SmBios::GetSysProductname,
        &SmBios::GetSysVersion,
        &SmBios::GetSystemSerialNumber,
        &SmBios::GetBoardManufacturer,
        &SmBios::GetBoardProduct,
        &SmBios::GetBoardVersion,
        &SmBios::GetBoardSerialNo,
        &SmBios::GetBoardAssetTag,
        // Of the table's first structure, which has no strings.
        &SmBios::GetBiosVendor,
        &SmBios::GetBiosVersion,
        &SmBios::GetBiosReleaseDate,
    };
    ExpectEach(-1, kOfTheMachine, text, 32u);
    constexpr int (SmBios::*kOfAStructure[])(int, char*, unsigned) = {
        &SmBios::GetProcessorManufacturer, &SmBios::GetProcessorVersion,
        &SmBios::GetProcessorSerialNo,     &SmBios::GetPortDecription,
        &SmBios::GetVoltageDescription,    &SmBios::GetTemperatureDescription,
    };
    ExpectEach(-1, kOfAStructure, 1, text, 32u);
    constexpr int (SmBios::*kOfTwoIndexes[])(int, int, char*, unsigned) = {
        &SmBios::GetCacheDesignation,
        &SmBios::GetPSManufacturer,
        &SmBios::GetPSDeviceName,
        &SmBios::GetPSSerialNo,
    };
    ExpectEach(-1, kOfTwoIndexes, 1, 1, text, 32u);
}

TEST_F(AccessTest, TerminatedTextsArePublic) {
    constexpr int (SmBios::*kOfAStructure[])(int, char*) = {
        &SmBios::GetProcessorFamily,
        &SmBios::GetProcessorVoltage,
        &SmBios::GetProcessorExternalClock,
        &SmBios::GetProcessorMaxSpeed,
        &SmBios::GetProcessorCurrentSpeed,
        &SmBios::GetPortType,
        &SmBios::GetFanStatus,
        &SmBios::GetFanDescription,
        &SmBios::GetFanSpeed,
        &SmBios::GetOnBoardDevType,
        &SmBios::GetOnBoardDevDescription,
        &SmBios::GetVoltageStatus,
        &SmBios::GetVoltageCurrent,
        &SmBios::GetVoltageMax,
        &SmBios::GetVoltageMin,
        &SmBios::GetTemperatureStatus,
        &SmBios::GetTemperatureCurrent,
    };
    ExpectEach(-1, kOfAStructure, 1, text);
    constexpr int (SmBios::*kOfTwoIndexes[])(int, int, char*) = {
        &SmBios::GetCacheMaxSize,
        &SmBios::GetCacheInstalledSize,
        &SmBios::GetCacheSpeed,
        &SmBios::GetPSStatus,
    };
    ExpectEach(-1, kOfTwoIndexes, 1, 1, text);
}

TEST_F(AccessTest, GettersOfOtherShapesArePublic) {
    unsigned char status = 0;
    EXPECT_EQ(reader->GetProcessorStatus(1, &status), -1);
    LocalMemInfo memory;
    EXPECT_EQ(reader->GetMemoryInformation(&memory), -1);
    EXPECT_EQ(reader->GetPSBiosEnable(), -1);
    int enabled = 1;
    EXPECT_EQ(reader->GetOnBoardDevBiosEnable(1, enabled), -1);
    EXPECT_EQ(enabled, 0);
}

}  // namespace
