// SPDX-License-Identifier: MIT
//
// The disks of a running system in the places that agents know.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "simulator/host/Disks.h"
#include "tests/support/HostTree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(DisksTest, FirstFourAreTakenByKindAndNumber) {
    EXPECT_THAT(sim::ChooseDisks({"nvme10n1", "nvme2n1", "sdaa", "sdb", "vda"}),
                ElementsAre(Pair('a', "sdb"), Pair('b', "sdaa"), Pair('c', "nvme2n1"),
                            Pair('d', "nvme10n1")));
    EXPECT_THAT(sim::ChooseDisks({"vda", "nvme0n1"}),
                ElementsAre(Pair('a', "nvme0n1"), Pair('b', "vda")));
}

TEST(DisksTest, IdeDiskKeepsItsLetter) {
    EXPECT_THAT(
        sim::ChooseDisks({"hdc", "sda", "hda", "sdb", "sdc"}),
        ElementsAre(Pair('a', "hda"), Pair('b', "sda"), Pair('c', "hdc"), Pair('d', "sdb")));
}

TEST(DisksTest, IdeDiskPastTheFourthTakesALetterThatIsFree) {
    EXPECT_THAT(sim::ChooseDisks({"hde", "hda"}), ElementsAre(Pair('a', "hda"), Pair('b', "hde")));
}

TEST(DisksTest, OtherBlockDevicesAreNoDisks) {
    EXPECT_THAT(sim::ChooseDisks({"loop0", "sr0", "dm-0", "md0", "zram0", "nvme0c0n1", "nvme0",
                                  "sd", "sda1", "nvme0n1p1", "hde1", "nvme0n1-2", "sd~"}),
                IsEmpty());
}

std::string SerialOf(const sim::IdeDrive& drive) {
    return {drive.identity->begin() + 20, drive.identity->begin() + 40};
}
std::string FirmwareOf(const sim::IdeDrive& drive) {
    return {drive.identity->begin() + 46, drive.identity->begin() + 54};
}
std::string ModelOf(const sim::IdeDrive& drive) {
    return {drive.identity->begin() + 54, drive.identity->begin() + 94};
}

TEST(DisksTest, ScsiDiskHasMakerModelAndTheSerialNumberOfItsPage) {
    const HostTree tree;
    tree.Write("sys/block/sda/size", "2097152\n");
    tree.Write("sys/block/sda/device/vendor", "MARROW  \n");
    tree.Write("sys/block/sda/device/model", "CHEETAH 15K\n");
    tree.Write("sys/block/sda/device/rev", "0006\n");
    tree.Write("sys/block/sda/device/vpd_pg80", std::string("\0\x80\0\x08  3LM0412", 14));
    tree.Write("dev/sda", "");
    const sim::IdeDrive drive = sim::DiskAsDrive(sim::HostFiles(tree.root), "sda");
    EXPECT_EQ(drive.files.at("media"), "disk\n");
    EXPECT_EQ(drive.files.at("model"), "MARROW CHEETAH 15K\n");
    EXPECT_EQ(drive.files.at("capacity"), "2097152\n");
    EXPECT_EQ(SerialOf(drive), "3LM0412             ");
    EXPECT_EQ(FirmwareOf(drive), "0006    ");
    EXPECT_EQ(ModelOf(drive), "MARROW CHEETAH 15K                      ");
    EXPECT_EQ(drive.image->Sectors(), 2097152u);
}

TEST(DisksTest, SataDiskHasItsModelAlone) {
    const HostTree tree;
    tree.Write("sys/block/sda/size", "8\n");
    tree.Write("sys/block/sda/device/vendor", "ATA     \n");
    tree.Write("sys/block/sda/device/model", "MARROW DISK 40\n");
    const sim::IdeDrive drive = sim::DiskAsDrive(sim::HostFiles(tree.root), "sda");
    EXPECT_EQ(drive.files.at("model"), "MARROW DISK 40\n");
    EXPECT_EQ(SerialOf(drive), std::string(20, ' '));
}

TEST(DisksTest, NvmeDiskHasTheTextsOfItsController) {
    const HostTree tree;
    tree.Write("sys/block/nvme0n1/size", "1000215216\n");
    tree.Write("sys/block/nvme0n1/device/model", "MARROW NV 512                           \n");
    tree.Write("sys/block/nvme0n1/device/serial", "NV0042              \n");
    tree.Write("sys/block/nvme0n1/device/firmware_rev", "1.0     \n");
    const sim::IdeDrive drive = sim::DiskAsDrive(sim::HostFiles(tree.root), "nvme0n1");
    EXPECT_EQ(drive.files.at("model"), "MARROW NV 512\n");
    EXPECT_EQ(SerialOf(drive), "NV0042              ");
    EXPECT_EQ(FirmwareOf(drive), "1.0     ");
}

TEST(DisksTest, VirtualDiskHasASerialNumberAndNoModel) {
    const HostTree tree;
    tree.Write("sys/block/vda/size", "16\n");
    tree.Write("sys/block/vda/serial", "VD-7");
    const sim::IdeDrive drive = sim::DiskAsDrive(sim::HostFiles(tree.root), "vda");
    EXPECT_EQ(drive.files.at("model"), "\n");
    EXPECT_EQ(SerialOf(drive), "VD-7                ");
}

TEST(DisksTest, DamagedFilesMakeEmptyTexts) {
    const HostTree tree;
    tree.Write("sys/block/sda/size", "many\n");
    tree.Write("sys/block/sda/device/vpd_pg80", std::string("\0\x80\0\0", 4));
    const sim::IdeDrive drive = sim::DiskAsDrive(sim::HostFiles(tree.root), "sda");
    EXPECT_EQ(drive.files.at("model"), "\n");
    EXPECT_EQ(SerialOf(drive), std::string(20, ' '));
    EXPECT_EQ(drive.image->Sectors(), 0u);
    EXPECT_LT(drive.image->Open(), 0);
}

TEST(DisksTest, BlankSerialNumberIsNone) {
    const HostTree tree;
    tree.Write("sys/block/sda/device/vpd_pg80", std::string("\0\x80\0\x04    ", 8));
    const sim::IdeDrive drive = sim::DiskAsDrive(sim::HostFiles(tree.root), "sda");
    EXPECT_EQ(SerialOf(drive), std::string(20, ' '));
}

TEST(DisksTest, DisksWithTheSameReasonShareAComplaint) {
    EXPECT_EQ(sim::CannotOpenDisks({{"/dev/sda", EACCES},
                                    {"/dev/sdb", ENOENT},
                                    {"/dev/nvme0n1", EACCES},
                                    {"/dev/vda", ENOMEDIUM},
                                    {"/dev/vdb", ENXIO},
                                    {"/dev/vdc", EPERM}}),
              "cannot open /dev/sda, /dev/nvme0n1: Permission denied (run as root, or get the "
              "right to read it); cannot open /dev/sdb: No such file or directory (there is no "
              "such device file); cannot open /dev/vda: No medium found; cannot open /dev/vdb: No "
              "such device or address (there is no such device file); cannot open /dev/vdc: "
              "Operation not permitted (run as root, or get the right to read it)");
}

}  // namespace
