// SPDX-License-Identifier: MIT
//
// Why a source could not be read, where devices open and their reads fail, and where the reason is
// gone by the time the tool looks for it.

#include <gtest/gtest.h>

#include <cerrno>

#include "simulator/SimulatedServer.h"
#include "simulator/machine/IdeDrive.h"
#include "simulator/machine/Machine.h"
#include "simulator/machine/PhysicalMemory.h"
#include "simulator/machine/SmbiosTable.h"
#include "tools/base/Source.h"

namespace tool {
namespace {

class MemorySourceTest : public testing::Test {
protected:
    MemorySourceTest() {
        const sim::SmbiosTable table;
        sim::SmbiosPlacement low;
        low.table = 0xE0000;
        server.GetMemory().PlaceSmbios(table.Image(), low);
    }

    sim::SimulatedServer server;
};

TEST_F(MemorySourceTest, RefusedReadOfTheSegmentIsExplained) {
    server.Fail("read", 1, EPERM);
    EXPECT_EQ(kPhysicalMemory.whyNotRead(),
              "cannot read /dev/mem at 0xF0000: Operation not permitted (it takes root with "
              "CAP_SYS_RAWIO and a kernel that allows it)");
}

TEST_F(MemorySourceTest, MemoryThatCannotBeSoughtInIsNamed) {
    server.Fail("lseek", 1, EIO);
    EXPECT_EQ(kPhysicalMemory.whyNotRead(), "cannot read /dev/mem at 0xF0000: Input/output error");
}

TEST_F(MemorySourceTest, RefusedReadOfTheTableIsExplainedByTheKernel) {
    server.Fail("read", 2, EPERM);
    EXPECT_EQ(kPhysicalMemory.whyNotRead(),
              "cannot read the SMBIOS table at 0xE0000 of /dev/mem: Operation not permitted (the "
              "kernel is built with STRICT_DEVMEM)");
}

TEST_F(MemorySourceTest, MemoryThatEndsBeforeTheTableIsNamed) {
    server.ShortRead(2, 0);
    EXPECT_EQ(kPhysicalMemory.whyNotRead(),
              "cannot read the SMBIOS table at 0xE0000 of /dev/mem: memory ends before it");
}

TEST(DriveSourceTest, DrivesThatCanBeListedByNowHaveNoOtherReason) {
    sim::SimulatedServer server;
    sim::InstallDrive(server.GetMachine(), 'a', sim::MakeDisk("EXAMPLE 40", 78165360, "EX1"));
    EXPECT_EQ(kIdeDrives.whyNotRead(), "the drives in /proc/ide could not be listed");
    EXPECT_EQ(kDisks.whyNotRead(), "a disk could not be opened");
}

}  // namespace
}  // namespace tool
