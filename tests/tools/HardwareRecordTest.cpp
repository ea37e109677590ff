// SPDX-License-Identifier: MIT
//
// PCI functions, drives, partitions and load as the tool reads them, and the reasons when it
// cannot.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>

#include "simulator/SimulatedServer.h"
#include "simulator/machine/FreeProgram.h"
#include "simulator/machine/IdeDrive.h"
#include "simulator/machine/Machine.h"
#include "simulator/machine/ProcStat.h"
#include "tools/records/Drives.h"
#include "tools/records/Load.h"
#include "tools/records/Partitions.h"
#include "tools/records/Pci.h"

namespace tool {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class HardwareRecordTest : public testing::Test {
protected:
    void AddFunctions(unsigned count) {
        for (unsigned i = 0; i < count; ++i)
            server.GetPci().Set({i / 256, i / 8 % 32, i % 8}, {0x86, 0x80, 0x01, 0x00});
    }
    void AddDisk(char letter) {
        sim::InstallDrive(server.GetMachine(), letter,
                          sim::MakeDisk("EXAMPLE 40", 78165360, "EX1"));
    }

    sim::SimulatedServer server;
};

TEST_F(HardwareRecordTest, PciFunctionsAreThoseOfTheBus) {
    AddFunctions(64);
    const auto functions = ReadPci();
    ASSERT_TRUE(functions.has_value());
    ASSERT_THAT(*functions, SizeIs(64));
    EXPECT_EQ(functions->back().location, "bus:0, dev:7, func:7");
    EXPECT_EQ(functions->back().className, "Old devices");
    EXPECT_EQ(functions->back().id, (PciId{0x8086, 0x0001}));
    EXPECT_FALSE(functions->back().secondaryBus.has_value());
}

TEST_F(HardwareRecordTest, APciBridgeNamesTheBusThatItLeadsTo) {
    sim::Bytes header(64);
    header[0x00] = 0x86;
    header[0x01] = 0x80;
    header[0x0B] = 0x06;
    header[0x0A] = 0x04;
    header[0x0E] = 0x81;  // a bridge, one of several functions
    header[0x18] = 0;
    header[0x19] = 5;
    header[0x1A] = 9;
    server.GetPci().Set({0, 30, 0}, header);
    const auto functions = ReadPci();
    ASSERT_TRUE(functions.has_value());
    ASSERT_THAT(*functions, SizeIs(1));
    EXPECT_EQ(functions->front().secondaryBus, 5);
    header[0x19] = 0;
    server.GetPci().Set({0, 30, 0}, header);
    EXPECT_FALSE(ReadPci()->front().secondaryBus.has_value()) << "a bridge that is not set up";
}

TEST_F(HardwareRecordTest, PciFunctionsWithoutAVendorTakeNoPlaceInTheList) {
    AddFunctions(64);
    server.GetPci().Set({0, 30, 0}, {0x00, 0x00, 0x34, 0x12});
    server.GetPci().Set({0, 31, 0}, {0xFF, 0xFF, 0x34, 0x12});
    const auto functions = ReadPci();
    ASSERT_TRUE(functions.has_value());
    EXPECT_THAT(*functions, SizeIs(64));
}

TEST_F(HardwareRecordTest, MorePciFunctionsThanFitAreReportedWithoutWaiting) {
    AddFunctions(65);
    EXPECT_FALSE(ReadPci().has_value());
    EXPECT_EQ(server.Clock().count(), 0);
    EXPECT_EQ(kPciPorts.whyNotRead(),
              "there are more than 64 PCI functions on buses 0 to 10, which the library does not "
              "list");
}

TEST_F(HardwareRecordTest, PciFunctionsWithoutPortAccessAreNotRead) {
    AddFunctions(1);
    server.Fail("iopl", 1, EPERM);
    EXPECT_FALSE(ReadPci().has_value());
    server.Fail("iopl", 1, EPERM);
    EXPECT_EQ(kPciPorts.whyNotRead(),
              "cannot use the PCI configuration ports: Operation not permitted (it takes root with "
              "CAP_SYS_RAWIO and a kernel that allows it)");
}

TEST_F(HardwareRecordTest, DrivesAreNotReadOnAKernelWithoutTheirFolder) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(ReadDrives().has_value());
    EXPECT_FALSE(ReadPartitions().has_value());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << "the library's remark is kept away";
    EXPECT_EQ(kIdeDrives.whyNotRead(),
              "cannot open /proc/ide: No such file or directory (no IDE controller, or a kernel "
              "from 5.14 on)");
}

TEST_F(HardwareRecordTest, DrivesThatMayNotBeListedAreNotRead) {
    server.Refuse("/proc/ide", EACCES);
    EXPECT_FALSE(ReadDrives().has_value());
    EXPECT_FALSE(ReadPartitions().has_value());
    EXPECT_EQ(kIdeDrives.whyNotRead(), "cannot open /proc/ide: Permission denied (run as root)");
}

TEST_F(HardwareRecordTest, DrivesHaveTheirExactTexts) {
    AddDisk('c');
    const auto drives = ReadDrives();
    ASSERT_TRUE(drives.has_value());
    ASSERT_THAT(*drives, SizeIs(1));
    EXPECT_EQ(drives->front().position, "Secondry Master");
    EXPECT_EQ(drives->front().model, "EXAMPLE 40");
    EXPECT_EQ(drives->front().size, "40020664320");
    EXPECT_EQ(drives->front().controller, "ide");
}

TEST_F(HardwareRecordTest, PartitionsNameTheDiskThatCouldNotBeOpened) {
    AddDisk('a');
    AddDisk('b');
    EXPECT_THAT(ReadPartitions()->notRead, IsEmpty());
    server.Refuse("/dev/hdb", EACCES);
    EXPECT_THAT(ReadPartitions()->notRead, ElementsAre(&kDisks));
    EXPECT_EQ(kDisks.whyNotRead(), "cannot open /dev/hdb: Permission denied (run as root)");
}

TEST_F(HardwareRecordTest, LoadIsMeasuredOverTheInterval) {
    server.GetStat().SetRates(0, {.user = 25, .nice = 0, .system = 0, .idle = 75});
    server.GetStat().SetRates(1, {.user = 0, .nice = 0, .system = 0, .idle = 100});
    server.GetFreeProgram().SetMemory(1000, 999);
    const Load load = ReadLoad({.loadInterval = 4});
    EXPECT_EQ(load.interval, 4);
    EXPECT_EQ(load.processors, (std::vector<int>{25, 0}));
    EXPECT_EQ(load.memory, 99);
    EXPECT_THAT(load.notRead, IsEmpty());
}

TEST_F(HardwareRecordTest, LoadIsReadFromAFolderThatMayNotBeWritten) {
    server.GetStat().SetRates(0, {});
    server.GetFreeProgram().SetMemory(100, 50);
    struct stat before {};
    ASSERT_EQ(stat(".", &before), 0);
    EXPECT_EQ(ReadLoad({}).memory, 50);
    struct stat after {};
    ASSERT_EQ(stat(".", &after), 0);
    EXPECT_EQ(before.st_mtim.tv_sec, after.st_mtim.tv_sec) << "nothing was made in the folder";
    EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
}

TEST_F(HardwareRecordTest, LoadOfProcessorsThatStandStillIsNotRead) {
    server.GetStat().SetRates(0, {.user = 0, .nice = 0, .system = 0, .idle = 0});
    server.GetFreeProgram().SetMemory(100, 50);
    const Load load = ReadLoad({});
    EXPECT_EQ(load.processors, std::nullopt);
    EXPECT_EQ(load.memory, 50);
    EXPECT_THAT(load.notRead, ElementsAre(&kProcessorTimes));
    EXPECT_EQ(kProcessorTimes.whyNotRead(),
              "the counters of a processor in /proc/stat stood still or went away");
}

TEST_F(HardwareRecordTest, LoadOfTheMemoryWithoutAShellIsNotRead) {
    server.Fail("system", 1, ENOMEM);
    const Load load = ReadLoad({});
    EXPECT_EQ(load.memory, std::nullopt);
    EXPECT_THAT(load.notRead, Contains(&kMemoryUse));
}

TEST_F(HardwareRecordTest, LoadWithoutProcOrFiguresIsNotRead) {
    server.Refuse("/proc/stat", EACCES);
    server.GetFreeProgram().SetText("no figures\n");
    const Load load = ReadLoad({});
    EXPECT_EQ(load.processors, std::nullopt);
    EXPECT_EQ(load.memory, std::nullopt);
    EXPECT_THAT(load.notRead, ElementsAre(&kProcessorTimes, &kMemoryUse));
    EXPECT_EQ(kProcessorTimes.whyNotRead(),
              "cannot open /proc/stat: Permission denied (run as root)");
    EXPECT_EQ(kMemoryUse.whyNotRead(),
              "the commands free and awk did not tell how much memory is in use");
}

TEST_F(HardwareRecordTest, LoadOfMoreMemoryThanThereIsIsNotRead) {
    server.GetFreeProgram().SetMemory(100, 100);
    EXPECT_EQ(ReadLoad({}).memory, 100);
    server.GetFreeProgram().SetMemory(100, 200);
    EXPECT_EQ(ReadLoad({}).memory, std::nullopt);
}

}  // namespace
}  // namespace tool
