// SPDX-License-Identifier: MIT
//
// Parts that no server has: a test that asks for one has made a mistake, and learns it at once.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

#include "simulator/bmc/Bmc.h"
#include "simulator/machine/IdeDrive.h"
#include "simulator/machine/Machine.h"
#include "simulator/machine/TextDevice.h"
#include "tests/support/DescriptorLimit.h"

namespace {

using sim::Bytes;

class ImpossibleMachineTest : public testing::Test {
protected:
    sim::Machine machine;
};

TEST_F(ImpossibleMachineTest, AFunctionOfPciHasAPlaceAnd256Bytes) {
    sim::PciBus& pci = machine.GetPci();
    EXPECT_NO_THROW(pci.Set({255, 31, 7}, Bytes(256)));
    EXPECT_THROW(pci.Set({256, 0, 0}, Bytes(256)), std::invalid_argument);
    EXPECT_THROW(pci.Set({0, 32, 0}, Bytes(256)), std::invalid_argument);
    EXPECT_THROW(pci.Set({0, 0, 8}, Bytes(256)), std::invalid_argument);
    EXPECT_THROW(pci.Set({0, 0, 0}, Bytes(257)), std::invalid_argument);
}

TEST_F(ImpossibleMachineTest, TheAddressOfPciReadsBackAndIsSetAsAWhole) {
    sim::PciBus& pci = machine.GetPci();
    pci.Set({0, 1, 0}, {0x86, 0x80});
    pci.Out(0xCF8, 4, 0x80000800);
    EXPECT_EQ(pci.In(0xCF8, 4), 0x80000800U);
    EXPECT_EQ(pci.In(0xCFC, 2), 0x8086U);
    EXPECT_EQ(pci.In(0xCF8, 1), 0xFFU) << "no byte of it";
    pci.Out(0xCF8, 1, 0);
    EXPECT_EQ(pci.In(0xCF8, 4), 0x80000800U);
    pci.Out(0xCFC, 4, 0x11111111);
    EXPECT_EQ(pci.In(0xCF8, 4), 0x80000800U);
    EXPECT_EQ(pci.In(0xCFC, 2), 0x8086U) << "no function can be written to";
    pci.Out(0xCF8, 4, 0x00000800);
    EXPECT_EQ(pci.In(0xCFC, 2), 0xFFFFU) << "not enabled";
}

TEST_F(ImpossibleMachineTest, ADriveIsOneOfFour) {
    const sim::IdeDrive drive = sim::MakeDisk("M", 10, "S");
    EXPECT_THROW(InstallDrive(machine, '`', drive), std::invalid_argument);
    EXPECT_THROW(InstallDrive(machine, 'e', drive), std::invalid_argument);
    EXPECT_NO_THROW(InstallDrive(machine, 'd', drive));
}

TEST_F(ImpossibleMachineTest, ADiskHasItsSectorsAndATableFourEntries) {
    sim::DiskImage disk(10);
    EXPECT_THROW(disk.Write(0, Bytes(513)), std::out_of_range);
    EXPECT_THROW(disk.Write(10, Bytes(1)), std::out_of_range);
    EXPECT_THROW(disk.SetEntry(0, 0, {}), std::out_of_range);
    EXPECT_THROW(disk.SetEntry(0, 5, {}), std::out_of_range);
}

TEST_F(ImpossibleMachineTest, ADiskThatTheSystemHasNoRoomForIsRefused) {
    try {
        const sim::DiskImage disk(std::uint64_t{1} << 54);
        FAIL() << "no file has 2^63 bytes";
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(),
                    testing::StartsWith("a simulated disk of 18014398509481984 sectors: "));
    }
}

TEST_F(ImpossibleMachineTest, ADiskThatCannotHaveADescriptorIsRefused) {
    if (kChecksNeedDescriptors) GTEST_SKIP() << "the sanitizer would end the program";
    std::string problem;
    {
        const DescriptorLimit none(0);
        try {
            const sim::DiskImage disk(1);
        } catch (const std::system_error& error) {
            problem = error.what();
        }
    }
    EXPECT_EQ(problem, "a simulated disk: Too many open files");
}

TEST_F(ImpossibleMachineTest, ADeviceThatCannotHaveADescriptorIsNotOpened) {
    if (kChecksNeedDescriptors) GTEST_SKIP() << "the sanitizer would end the program";
    std::optional<sim::Answer> opened;
    {
        const DescriptorLimit none(0);
        opened = machine.Open({}, "/dev/mem", O_RDONLY);
    }
    EXPECT_EQ(opened->error, EMFILE);
    EXPECT_EQ(machine.GetLog().Lines().back(), "open /dev/mem O_RDONLY -> -1 EMFILE");
}

TEST_F(ImpossibleMachineTest, AMachineHasOneController) {
    machine.GiveBmc(true, false);
    EXPECT_THROW(machine.GiveBmc(false, true), std::logic_error);
    EXPECT_NO_THROW((void)machine.GetBmc());
}

TEST_F(ImpossibleMachineTest, NoOtherPathIsTheMachines) {
    for (const std::string path : {"", "/", "//", "/dev/null", "/dev/hd", "/dev/hd1", "/dev/hd{",
                                   "/dev/xda", "/proc/ides"}) {
        EXPECT_FALSE(sim::Machine::IsMachinePath(path)) << path;
        EXPECT_THROW(machine.Install(path, std::make_unique<sim::TextDevice>(std::string())),
                     std::invalid_argument);
        EXPECT_THROW(machine.InstallDirectory(path), std::invalid_argument);
        EXPECT_THROW(machine.UseReal(path, "/dev/null"), std::invalid_argument);
        EXPECT_EQ(machine.OpenDirectory({}, path.c_str()), std::nullopt) << path;
    }
    EXPECT_EQ(machine.OpenDirectory({}, nullptr), std::nullopt);
    for (const std::string path : {"/dev//hda", "/proc/ide/", "/proc/stat"})
        EXPECT_TRUE(sim::Machine::IsMachinePath(path)) << path;
}

TEST_F(ImpossibleMachineTest, AnAnswerHasACompletionCode) {
    EXPECT_THROW(machine.GetBmc().SetAnswer("Get Device ID", 0, {}, {}), std::invalid_argument);
}

TEST_F(ImpossibleMachineTest, AFileOfTextIsReadFromAnywhereAndNotWritten) {
    int error = 0;
    sim::TextDevice text(std::string("abc"));
    EXPECT_EQ(text.Open(O_RDWR, error), nullptr);
    EXPECT_EQ(error, EACCES);
    const std::unique_ptr<sim::OpenFile> file = text.Open(O_RDONLY, error);
    ASSERT_NE(file, nullptr);
    std::array<char, 2> read{};
    EXPECT_EQ(file->Seek(1, SEEK_SET).value, 1);
    EXPECT_EQ(file->Read(read.data(), 1).value, 1);
    EXPECT_EQ(read[0], 'b');
    EXPECT_EQ(file->Seek(-1, SEEK_CUR).value, 1);
    EXPECT_EQ(file->Read(read.data(), 2).value, 2);
    EXPECT_EQ(read[0], 'b');
    EXPECT_EQ(file->Read(read.data(), 2).value, 0) << "the end";
    EXPECT_EQ(file->Seek(-1, SEEK_SET).error, EINVAL);
    EXPECT_EQ(file->Seek(0, SEEK_END).error, EINVAL);
}

}  // namespace
