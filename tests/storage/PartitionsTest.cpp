// SPDX-License-Identifier: MIT
//
// The partition inventory: which partitions are listed under which names, and what is read of a
// disk.
#include "storage/PartitionsTest.h"

#include <algorithm>

#include "Talvane.h"
#include "support/RecordImage.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Where an entry's fields lie, from the binary interface.
constexpr std::size_t PartitionAt(std::size_t index) {
    return 4 + index * 324;
}
constexpr std::size_t kPartitionDescription = 0, kPartitionSize = 128, kPartitionFileSystem = 256;

TEST_F(PartitionsTest, PrimaryAndLogicalPartitionsAreNumberedAsTheKernelNumbersThem) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x83, 63, 208782});
    disk.SetEntry(0, 2, {0x82, 208845, 2088450});
    disk.SetEntry(0, 3, {0x0F, 143 * kCylinder, 4000 * kCylinder});
    WriteRecord(disk, 143, 0x83, 1856 * kCylinder + 16002, 0x05);
    WriteRecord(disk, 2000, 0x83, 20971520);
    EXPECT_THAT(Entries(),
                ElementsAre("/dev/hda1 Linux 106896384", "/dev/hda2 Linux swap 1069286400",
                            "/dev/hda5 Linux 15274312704", "/dev/hda6 Linux 10737418240"));
}

TEST_F(PartitionsTest, LinuxPartitionOfTenGibibytesReportsItsSizeInBytes) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 20971520});
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda1 Linux 10737418240"));
}

TEST_F(PartitionsTest, EntryIsWrittenAndNothingElse) {
    PutDisk('a').SetEntry(0, 3, {0x83, 63, 20971520});
    RecordImage expected(sizeof(PartitionInformation));
    expected.Number(0, 1);
    expected.Text(PartitionAt(0) + kPartitionDescription, "/dev/hda3");
    expected.Text(PartitionAt(0) + kPartitionSize, "10737418240");
    expected.Text(PartitionAt(0) + kPartitionFileSystem, "Linux");
    RecordImage actual(sizeof(PartitionInformation));
    GetAllPartitionInfo(static_cast<PartitionInformation*>(actual.Data()));
    EXPECT_TRUE(SameBytes(expected, actual));
}

TEST_F(PartitionsTest, OfTwoHundredFiftySixPrimaryTypesFourAreListed) {
    sim::DiskImage& disk = PutDisk('a');
    const std::map<int, std::string> listed = {
        {0x07, "HPFS/NTFS"}, {0x0B, "Win95 FAT32"}, {0x82, "Linux swap"}, {0x83, "Linux"}};
    for (int type = 0; type < 0x100; ++type) {
        disk.SetEntry(0, 2, {static_cast<std::uint8_t>(type), 63, 1});
        const auto row = listed.find(type);
        if (row == listed.end())
            EXPECT_THAT(Entries(), IsEmpty()) << type;
        else
            EXPECT_THAT(Entries(), ElementsAre("/dev/hda2 " + row->second + " 512")) << type;
    }
}

TEST_F(PartitionsTest, NtfsIsListedAsAPrimaryOnly) {
    EXPECT_THAT(EntriesOfChain({0x07}), IsEmpty());
}

TEST_F(PartitionsTest, BootSignatureIsNotLookedAt) {
    // No image of these tests has one.
    PutDisk('a').SetEntry(0, 4, {0x83, 63, 2});
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda4 Linux 1024"));
}

TEST_F(PartitionsTest, DisksFollowEachOtherUnderTheirOwnNames) {
    for (const char letter : {'d', 'c', 'b', 'a'})
        PutDisk(letter).SetEntry(0, 1, {0x83, 63, static_cast<std::uint32_t>(letter - 'a' + 1)});
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda1 Linux 512", "/dev/hdb1 Linux 1024",
                                       "/dev/hdc1 Linux 1536", "/dev/hdd1 Linux 2048"));
}

TEST_F(PartitionsTest, OpticalDrivesAreNotOpenedForPartitions) {
    sim::IdeDrive drive = sim::MakeDisk("Optical", 1000, "1");
    drive.files["media"] = "cdrom\n";
    drive.image->SetEntry(0, 1, {0x83, 63, 1});
    Put('a', drive);
    EXPECT_THAT(Entries(), IsEmpty());
}

TEST_F(PartitionsTest, SizeOfATerabyteAndMoreHasAFirstCharacterBeyondTheDigits) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 0xFFFFFFFF});
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda1 Linux E99023255040"));
}

TEST_F(PartitionsTest, BlankDiskListsNothing) {
    PutDisk('a');
    EXPECT_THAT(Entries(), IsEmpty());
}

TEST_F(PartitionsTest, DiskThatCannotBeOpenedListsNothingAndTheNextIsRead) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 1});
    PutDisk('b').SetEntry(0, 1, {0x83, 63, 2});
    server.Refuse("/dev/hda", EACCES);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hdb1 Linux 1024"));
}

TEST_F(PartitionsTest, UnreadableEntryIsAnEmptyOne) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x83, 63, 1});
    disk.SetEntry(0, 2, {0x83, 63, 2});
    constexpr int kReadsOfTheDrive = 3;  // media, model, capacity
    server.Fail("read", kReadsOfTheDrive + 1);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda2 Linux 1024"));
}

TEST_F(PartitionsTest, BytesOfAnEntryThatDoNotComeAreZero) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 0x01010101});
    server.ShortRead(4, 13);  // all but the upper three bytes of the size
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda1 Linux 512"));
}

TEST_F(PartitionsTest, PrimaryEntriesAreReadByTheirOffsetsAndTheDiskIsLeftAtItsStart) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 1});
    server.GetLog().Clear();
    Read();
    std::vector<std::string> lines = server.GetLog().Lines();
    const auto second = std::find(lines.begin(), lines.end(), "close /dev/hda -> 0") + 1;
    lines.erase(lines.begin(), std::find(second, lines.end(), "open /dev/hda O_RDONLY -> ok"));
    EXPECT_THAT(lines, ElementsAre("open /dev/hda O_RDONLY -> ok", "lseek /dev/hda 0x1BE -> 0x1BE",
                                   "read /dev/hda 0x1BE 16 -> 16", "lseek /dev/hda 0x1CE -> 0x1CE",
                                   "read /dev/hda 0x1CE 16 -> 16", "lseek /dev/hda 0x1DE -> 0x1DE",
                                   "read /dev/hda 0x1DE 16 -> 16", "lseek /dev/hda 0x1EE -> 0x1EE",
                                   "read /dev/hda 0x1EE 16 -> 16", "lseek /dev/hda 0x0 -> 0x0",
                                   "close /dev/hda -> 0"));
}

TEST_F(PartitionsTest, ServerWithoutIdeDevicesHasNone) {
    record.quantity = 7;
    testing::internal::CaptureStdout();
    GetAllPartitionInfo(&record);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "No ide devices.");
    EXPECT_EQ(record.quantity, 0);
}

TEST_F(PartitionsTest, CommandOfGetInfoNeedsNoSmbiosTable) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 1});
    EXPECT_EQ(GetInfo(TALVANE_PARTITIONS, &record), 0);
    EXPECT_EQ(record.quantity, 1);
    EXPECT_EQ(GetInfo(0x400000, &record), 0);
}

}  // namespace
