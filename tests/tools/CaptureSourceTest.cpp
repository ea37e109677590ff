// SPDX-License-Identifier: MIT
//
// What a capture takes of memory, PCI functions, drives and load where something cannot be read or
// is not as usual.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <cerrno>

#include "simulator/SimulatedServer.h"
#include "simulator/machine/IdeDrive.h"
#include "simulator/machine/Machine.h"
#include "support/EntryPointImage.h"
#include "tools/capture/MachineCapture.h"

namespace tool {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

auto IsUnopened(const std::string& path, int error) {
    return AllOf(Field(&Unopened::path, path), Field(&Unopened::error, error));
}

class CaptureSourceTest : public testing::Test {
protected:
    // Memory comes filled with a pattern, so that bytes nobody has set do not pass for zeroes.
    CaptureSourceTest() { mallopt(M_PERTURB, 0x5A); }

    void PlaceEntry(const TableLocation& table) {
        server.GetMemory().Write(0xF0010, SmbiosEntryImage(table));
    }
    void Install(char letter, const sim::IdeDrive& drive) {
        sim::InstallDrive(server.GetMachine(), letter, drive);
    }

    sim::SimulatedServer server;
    MachineCapture capture;
};

TEST_F(CaptureSourceTest, MemoryThatEndsBeforeTheBiosSegmentIsCapturedAsSuch) {
    server.GetMemory().Resize(0xF8000);
    CaptureSmbios(capture);
    EXPECT_FALSE(capture.smbios.has_value());
    EXPECT_EQ(capture.memorySize, 0xF0000u);
    EXPECT_THAT(capture.notRead, ElementsAre(&kPhysicalMemory));
}

TEST_F(CaptureSourceTest, TableBeyondEveryReadIsLeftOutAndItsEntryPointKept) {
    PlaceEntry({0xBF7E0000, 256, 4});
    CaptureSmbios(capture);
    ASSERT_TRUE(capture.smbios.has_value());
    EXPECT_FALSE(capture.smbios->isTableRead);
    EXPECT_EQ(capture.smbios->at, 0xF0010u);
    EXPECT_THAT(capture.smbios->entry,
                testing::ElementsAreArray(SmbiosEntryImage({0xBF7E0000, 256, 4})));
    EXPECT_EQ(capture.memorySize, 0u) << "its address alone makes it unreadable";
    EXPECT_THAT(capture.notRead, ElementsAre(&kPhysicalMemory));
}

// The read takes 2 GiB, more than one allocation can have.
TEST_F(CaptureSourceTest, TableForWhoseReadThereIsNoMemoryIsLeftOut) {
    PlaceEntry({0x7FFF0000, 256, 4});
    CaptureSmbios(capture);
    ASSERT_TRUE(capture.smbios.has_value());
    EXPECT_FALSE(capture.smbios->isTableRead);
    EXPECT_EQ(capture.memorySize, 0x7FFF0000u) << "the machine ends before the table";
}

TEST_F(CaptureSourceTest, BytesOfTheTableThatAShortReadDoesNotBringAreZero) {
    PlaceEntry({0xF0100, 4, 1});
    server.GetMemory().Write(0xF0100, std::array<std::uint8_t, 4>{1, 2, 3, 4});
    server.ShortRead(2, 0x102);
    CaptureSmbios(capture);
    ASSERT_TRUE(capture.smbios && capture.smbios->isTableRead);
    EXPECT_THAT(capture.smbios->table, ElementsAre(1, 2, 0, 0));
    server.ShortRead(2, 0x100);
    CaptureSmbios(capture);
    EXPECT_THAT(capture.smbios->table, ElementsAre(0, 0, 0, 0)) << "the read ends before the table";
}

TEST_F(CaptureSourceTest, PciFunctionsWithoutPortAccessAreNotRead) {
    server.GetPci().Set({0, 0, 0}, {0x86, 0x80, 0x01, 0x00});
    server.Fail("iopl", 1, EPERM);
    CapturePci(capture);
    EXPECT_THAT(capture.pci, IsEmpty());
    EXPECT_THAT(capture.unopened, ElementsAre(IsUnopened("ports", EPERM)));
    EXPECT_THAT(capture.notRead, ElementsAre(&kPciPorts));
}

TEST_F(CaptureSourceTest, PciFunctionsOfVendorZeroAreLeftOut) {
    server.GetPci().Set({0, 1, 0}, {0x00, 0x00, 0x01, 0x00});
    server.GetPci().Set({2, 3, 4}, {0x86, 0x80, 0x01, 0x00});
    CapturePci(capture);
    ASSERT_THAT(capture.pci, SizeIs(1));
    EXPECT_EQ(capture.pci[0].bus, 2u);
    EXPECT_EQ(capture.pci[0].device, 3u);
    EXPECT_EQ(capture.pci[0].function, 4u);
    EXPECT_EQ(capture.pci[0].header[0], 0x86);
}

TEST_F(CaptureSourceTest, DriveHasTheFilesThatAreThere) {
    Install('a', {.files = {{"model", ""}}, .identity = {}, .image = {}});
    Install('b', {.files = {}, .identity = {}, .image = {}});
    CaptureDrives(capture);
    ASSERT_THAT(capture.drives, SizeIs(1)) << "a drive without a file is none";
    EXPECT_EQ(capture.drives[0].letter, 'a');
    EXPECT_THAT(capture.drives[0].files, ElementsAre(testing::Pair("model", "")));
    EXPECT_FALSE(capture.drives[0].isOpened) << "it does not say that it is a disk";
    EXPECT_THAT(capture.unopened, IsEmpty());
}

TEST_F(CaptureSourceTest, DiskWithoutIdentityCapacityAndTableIsCapturedAsSuch) {
    Install('a', {.files = {{"media", "disk"}},
                  .identity = {},
                  .image = std::make_shared<sim::DiskImage>(100)});
    CaptureDrives(capture);
    ASSERT_THAT(capture.drives, SizeIs(1));
    EXPECT_TRUE(capture.drives[0].isOpened);
    EXPECT_FALSE(capture.drives[0].identity.has_value());
    EXPECT_THAT(capture.drives[0].sectors, IsEmpty());
    EXPECT_EQ(capture.drives[0].sectorCount, 0u);
}

TEST_F(CaptureSourceTest, DiskThatCannotBeOpenedKeepsItsFiles) {
    Install('c', sim::MakeDisk("EXAMPLE 40", 1000, "EX1"));
    server.Refuse("/dev/hdc", EACCES);
    CaptureDrives(capture);
    ASSERT_THAT(capture.drives, SizeIs(1));
    EXPECT_EQ(capture.drives[0].files.at("model"), "EXAMPLE 40\n");
    EXPECT_FALSE(capture.drives[0].isOpened);
    EXPECT_THAT(capture.unopened, ElementsAre(IsUnopened("/dev/hdc", EACCES)));
    EXPECT_THAT(capture.notRead, ElementsAre(&kDisks));
}

TEST_F(CaptureSourceTest, LoadWithoutProcAndShellIsNotRead) {
    server.Refuse("/proc/stat", EACCES);
    server.GetFreeProgram().SetMemory(100, 50);
    server.Fail("system", 1, ENOMEM);
    CaptureLoad(capture);
    EXPECT_EQ(capture.load.free, "");
    EXPECT_THAT(capture.load.stat, Each(""));
    EXPECT_THAT(capture.unopened, ElementsAre(IsUnopened("/proc/stat", EACCES)));
    EXPECT_THAT(capture.notRead, ElementsAre(&kMemoryUse, &kProcessorTimes));
}

TEST_F(CaptureSourceTest, OfAHugeProcStatTheFirst64KibAreTaken) {
    server.GetStat().SetText(std::chrono::seconds(0), std::string(70000, 'a'));
    server.GetStat().SetText(std::chrono::seconds(1), "later");
    server.GetFreeProgram().SetMemory(100, 50);
    CaptureLoad(capture);
    EXPECT_EQ(capture.load.stat[0], std::string(65536, 'a'));
    EXPECT_EQ(capture.load.stat[1], "later");
    EXPECT_THAT(capture.notRead, IsEmpty());
}

}  // namespace
}  // namespace tool
