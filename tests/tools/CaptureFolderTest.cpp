// SPDX-License-Identifier: MIT
//
// What a capture writes down as statements and files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "tests/tools/FileText.h"
#include "tools/capture/MachineFolder.h"

namespace {

using testing::HasSubstr;
using testing::Not;

std::string DescriptionOf(const tool::MachineCapture& capture) {
    return FileText(tool::MachineFolderOf(capture, {}, {}), "machine.txt");
}

TEST(CaptureFolderTest, WayIsWrittenWithTheDisksThatCannotBeOpened) {
    const tool::Way way{"drives",   false, "/sys/block", "2 left out", "", "/dev/sda, /dev/sdb",
                        "no rights"};
    const archive::Files files = tool::MachineFolderOf({}, {}, {way});
    EXPECT_THAT(FileText(files, "machine.txt"),
                testing::StartsWith("way drives host \"/sys/block\" note \"2 left out\" "
                                    "unopened \"/dev/sda, /dev/sdb\" \"no rights\"\n"));
}

TEST(CaptureFolderTest, BytesOfAWayThatAreNotPlainAsciiAreQuestionMarks) {
    const tool::Way way{"bmc", true, "a\nb\x1F~\x7F\xE9", "", "", "", ""};
    EXPECT_THAT(FileText(tool::MachineFolderOf({}, {}, {way}), "machine.txt"),
                testing::StartsWith("way bmc direct \"a?b?~??\"\n"));
}

TEST(CaptureFolderTest, DumpOfAnEmptyTableHasAByteAfterTheEntryPoint) {
    tool::MachineCapture capture;
    capture.smbios = {false, tool::CapturedBytes(31, 'e'), 0xF0010, true, {}};
    const archive::Files files = tool::MachineFolderOf(capture, {}, {});
    EXPECT_EQ(files.at("smbios.bin").size(), 33u);
    EXPECT_EQ(files.at("smbios.bin").back(), 0);
    EXPECT_THAT(FileText(files, "machine.txt"), HasSubstr("smbios dump smbios.bin\n"));
}

TEST(CaptureFolderTest, MissingDeviceIsNamedWhereAMachineWouldHaveItAnyway) {
    tool::MachineCapture capture;
    capture.unopened = {{"/dev/mem", ENOENT},  {"/proc/stat", ENOENT}, {"/dev/hdb", ENOENT},
                        {"/dev/ipmi", ENOENT}, {"/proc/ide", ENOENT},  {"ports", EPERM}};
    const std::string description = DescriptionOf(capture);
    EXPECT_THAT(description, HasSubstr("without /dev/mem ENOENT\n"
                                       "without /proc/stat ENOENT\n"
                                       "without /dev/hdb ENOENT\n"
                                       "without ports EPERM\n"));
    EXPECT_THAT(description, Not(HasSubstr("/dev/ipmi")));
    EXPECT_THAT(description, Not(HasSubstr("/proc/ide")));
}

TEST(CaptureFolderTest, FolderOfDrivesWithoutADriveIsKept) {
    tool::MachineCapture capture;
    EXPECT_THAT(DescriptionOf(capture), Not(HasSubstr("drive")));
    capture.hasIdeFolder = true;
    EXPECT_THAT(DescriptionOf(capture), HasSubstr("drive none\n"));
}

TEST(CaptureFolderTest, EmptyFirstTextOfTheLoadIsABlankLine) {
    tool::MachineCapture capture;
    EXPECT_THAT(DescriptionOf(capture), Not(HasSubstr("stat "))) << "neither text was read";
    capture.load.stat[1] = "cpu0 1 2 3 4\n";
    const archive::Files files = tool::MachineFolderOf(capture, {}, {});
    EXPECT_EQ(FileText(files, "stat-0.txt"), "\n");
    EXPECT_EQ(FileText(files, "stat-1.txt"), "cpu0 1 2 3 4\n");
}

}  // namespace
