// SPDX-License-Identifier: MIT
//
// Fixture of the tests of the exported functions: a simulated server, its structure table and
// marked records to fill.
#ifndef TALVANE_TESTS_SUPPORT_INTERFACETEST_H
#define TALVANE_TESTS_SUPPORT_INTERFACETEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "Talvane.h"
#include "simulator/SimulatedServer.h"
#include "simulator/machine/SmbiosTable.h"
#include "support/RecordImage.h"

// The command that fills the shortest record of SMBIOS, where any will do.
inline constexpr unsigned long kSystem = 0x10000000;

class InterfaceTest : public ::testing::Test {
protected:
    // The readers are the process's; each test starts without them.
    void TearDown() override { release(); }

    void Place(const sim::SmbiosPlacement& placement = {}) {
        server.GetMemory().PlaceSmbios(table.Image(), placement);
    }

    void PlaceVersion(int major, int minor) {
        sim::SmbiosPlacement placement;
        placement.major = static_cast<std::uint8_t>(major);
        placement.minor = static_cast<std::uint8_t>(minor);
        Place(placement);
    }

    static int Get(unsigned long command, RecordImage& record) {
        return GetInfo(command, record.Data());
    }

    // The command succeeds and leaves a marked record in the expected state.
    static void ExpectRecord(unsigned long command, RecordImage record,
                             const RecordImage& expected) {
        EXPECT_EQ(Get(command, record), 0);
        EXPECT_TRUE(SameBytes(expected, record));
    }

    sim::SimulatedServer server;
    sim::SmbiosTable table;
};

#endif
