// SPDX-License-Identifier: MIT
//
// The logical partitions: which types are listed, how their chain is walked, and that every walk
// ends.
#include <sstream>

#include "storage/PartitionsTest.h"
#include "support/RecordImage.h"

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LogicalPartitionsTest : public PartitionsTest {};

TEST_F(LogicalPartitionsTest, OfTwoHundredFiftySixLogicalTypesEightAreListed) {
    const std::map<int, std::string> listed = {{0x06, "FAT 16"},
                                               {0x0B, "Win95 FAT32"},
                                               {0x0C, "Win95 FAT32 (LBA)"},
                                               {0x0E, "Win95 FAT16 (LBA)"},
                                               {0x16, "Hidden FAT16"},
                                               {0x17, "Hidden HPFS/NTFS"},
                                               {0x82, "Linux swap"},
                                               {0x83, "Linux"}};
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, kCylinder, kCylinder});
    for (int type = 0; type < 0x100; ++type) {
        WriteRecord(disk, 1, static_cast<std::uint8_t>(type), 1);
        const auto row = listed.find(type);
        if (row == listed.end())
            EXPECT_THAT(Entries(), IsEmpty()) << type;
        else
            EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 " + row->second + " 512")) << type;
    }
}

TEST_F(LogicalPartitionsTest, Fat16IsListedInsideTheExtendedPartitionOnly) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x06, 63, 16002});
    disk.SetEntry(0, 2, {0x0F, kCylinder, 2 * kCylinder});
    WriteRecord(disk, 1, 0x06, 16002);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 FAT 16 8193024"));
}

TEST_F(LogicalPartitionsTest, ExtendedPartitionOfAnotherTypeListsNothingOfItsContents) {
    sim::DiskImage& disk = PutDisk('a');
    WriteRecord(disk, 1, 0x83, 16002);
    for (const int type : {0x05, 0x85}) {
        disk.SetEntry(0, 1, {static_cast<std::uint8_t>(type), kCylinder, 2 * kCylinder});
        EXPECT_THAT(Entries(), IsEmpty()) << type;
    }
}

TEST_F(LogicalPartitionsTest, LogicalNumbersCountUnlistedTypes) {
    EXPECT_THAT(EntriesOfChain({0x83, 0x07, 0x82}),
                ElementsAre("/dev/hda5 Linux 1024", "/dev/hda7 Linux swap 1536"));
}

TEST_F(LogicalPartitionsTest, UnlistedLogicalOverwritesTheSizeOfTheEntryBefore) {
    EXPECT_THAT(EntriesOfChain({0x83, 0x07}), ElementsAre("/dev/hda5 Linux 1024"));
}

TEST_F(LogicalPartitionsTest, UnlistedLogicalOverwritesTheSizeOfAPrimaryToo) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x83, 63, 100});
    disk.SetEntry(0, 2, {0x0F, kCylinder, 2 * kCylinder});
    WriteRecord(disk, 1, 0x07, 7);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda1 Linux 3584"));
}

TEST_F(LogicalPartitionsTest, UnlistedLogicalOverwritesTheSizeOnTheDiskBeforeToo) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 100});
    sim::DiskImage& second = PutDisk('b');
    second.SetEntry(0, 1, {0x0F, kCylinder, 2 * kCylinder});
    WriteRecord(second, 1, 0x07, 7);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda1 Linux 3584"));
}

TEST_F(LogicalPartitionsTest, UnlistedLogicalBeforeTheFirstEntryWritesNothing) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, kCylinder, 2 * kCylinder});
    WriteRecord(disk, 1, 0x07, 7);
    RecordImage expected(sizeof(PartitionInformation));
    expected.Number(0, 0);
    RecordImage actual(sizeof(PartitionInformation));
    GetAllPartitionInfo(static_cast<PartitionInformation*>(actual.Data()));
    EXPECT_TRUE(SameBytes(expected, actual));
}

TEST_F(LogicalPartitionsTest, NextRecordIsTakenToLieOnTheCylinderAfterThePartition) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, 10 * kCylinder + 5, 1000 * kCylinder});  // rounded down to 10
    WriteRecord(disk, 10, 0x83, kCylinder - 1, 0x05);                   // next on 10 + 0 + 1
    WriteRecord(disk, 11, 0x83, kCylinder, 0x05);                       // next on 11 + 1 + 1
    WriteRecord(disk, 13, 0x83, 2 * kCylinder + 16064, 0x05);           // next on 13 + 2 + 1
    WriteRecord(disk, 16, 0x82, 3);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 Linux 8224768", "/dev/hda6 Linux 8225280",
                                       "/dev/hda7 Linux 24675328", "/dev/hda8 Linux swap 1536"));
}

TEST_F(LogicalPartitionsTest, OfEachRecordOfTheChainTheFirstTwoEntriesAreRead) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, 10 * kCylinder, 1000 * kCylinder});
    WriteRecord(disk, 10, 0x83, kCylinder, 0x05);
    WriteRecord(disk, 12, 0x82, 3 * kCylinder, 0x05);
    WriteRecord(disk, 16, 0x07, 1);
    Read();
    std::vector<std::string> expected;
    for (const std::uint64_t cylinder : {10, 12, 16})
        for (const std::uint64_t entry : {446, 462}) {
            std::ostringstream line;
            line << "read /dev/hda 0x" << std::hex << std::uppercase << cylinder * 8225280 + entry
                 << " 16 -> 16";
            expected.push_back(line.str());
        }
    std::vector<std::string> reads;  // after the boot record
    for (const std::string& line : server.GetLog().Lines())
        if (line.starts_with("read /dev/hda ") && !line.starts_with("read /dev/hda 0x1"))
            reads.push_back(line);
    EXPECT_EQ(reads, expected);
}

TEST_F(LogicalPartitionsTest, WhereTheLinkPointsIsNotLookedAt) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, kCylinder, 1000 * kCylinder});
    disk.SetEntry(1 * kCylinder, 1, {0x83, 63, 1});
    disk.SetEntry(1 * kCylinder, 2, {0x05, 500 * kCylinder, 1});
    WriteRecord(disk, 2, 0x82, 2);
    WriteRecord(disk, 501, 0x0B, 3);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 Linux 512", "/dev/hda6 Linux swap 1024"));
}

TEST_F(LogicalPartitionsTest, AnyLinkTypeButZeroContinuesTheChain) {
    for (const int link : {0x01, 0x05, 0x0F, 0x83, 0xFF}) {
        sim::DiskImage& disk = PutDisk('a');
        disk.SetEntry(0, 1, {0x0F, kCylinder, 1000 * kCylinder});
        WriteRecord(disk, 1, 0x83, 1, static_cast<std::uint8_t>(link));
        WriteRecord(disk, 2, 0x83, 2);
        EXPECT_EQ(Entries().size(), 2u) << link;
    }
}

TEST_F(LogicalPartitionsTest, SeveralExtendedPartitionsAreEachNumberedFromFive) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, 1 * kCylinder, kCylinder});
    disk.SetEntry(0, 2, {0x83, 63, 1});
    disk.SetEntry(0, 3, {0x0F, 2 * kCylinder, kCylinder});
    WriteRecord(disk, 1, 0x82, 2);
    WriteRecord(disk, 2, 0x0B, 3);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 Linux swap 1024", "/dev/hda2 Linux 512",
                                       "/dev/hda5 Win95 FAT32 1536"));
}

TEST_F(LogicalPartitionsTest, ExtendedPartitionOnTheFirstCylinderReadsTheBootRecordItself) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x83, 63, 5});
    disk.SetEntry(0, 3, {0x0F, kCylinder - 1, kCylinder});
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda1 Linux 2560", "/dev/hda5 Linux 2560"));
}

TEST_F(LogicalPartitionsTest, RecordsAboveFourGibibytesAreReached) {
    sim::DiskImage& disk = PutDisk('a', 4278189825u);
    disk.SetEntry(0, 1, {0x0F, 200000 * kCylinder, 1000 * kCylinder});
    WriteRecord(disk, 200000, 0x83, 63, 0x05);
    WriteRecord(disk, 200001, 0x82, 64);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 Linux 32256", "/dev/hda6 Linux swap 32768"));
}

TEST_F(LogicalPartitionsTest, TwentySixEntriesAreFilled) {
    const std::vector<std::string> entries = EntriesOfChain(std::vector<std::uint8_t>(26, 0x83));
    ASSERT_EQ(entries.size(), 26u);
    EXPECT_EQ(entries.back(), "/dev/hda30 Linux 13312");
}

TEST_F(LogicalPartitionsTest, TwentySeventhEntryEndsItsChainAndTheSizeBeforeStays) {
    sim::DiskImage& second = PutDisk('b');
    second.SetEntry(0, 1, {0x83, 63, 1});
    const std::vector<std::string> entries = EntriesOfChain(std::vector<std::uint8_t>(27, 0x83));
    ASSERT_EQ(entries.size(), 26u);
    EXPECT_EQ(entries.back(), "/dev/hda30 Linux 13312");
    EXPECT_THAT(server.GetLog().Lines(), Contains("close /dev/hdb -> 0"));
}

TEST_F(LogicalPartitionsTest, DiskAfterAFullRecordIsStillReadAndOverwritesTheLastSize) {
    sim::DiskImage& second = PutDisk('b');
    second.SetEntry(0, 1, {0x0F, kCylinder, 1000 * kCylinder});
    WriteRecord(second, 1, 0x07, 2);
    const std::vector<std::string> entries = EntriesOfChain(std::vector<std::uint8_t>(26, 0x83));
    ASSERT_EQ(entries.size(), 26u);
    EXPECT_EQ(entries.back(), "/dev/hda30 Linux 1024");
}

TEST_F(LogicalPartitionsTest, NothingIsWrittenPastAFullRecord) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, kCylinder, 1000 * kCylinder});
    for (std::uint32_t i = 1; i <= 40; ++i) WriteRecord(disk, i, 0x83, 1, 0x05);
    for (unsigned entry = 2; entry <= 4; ++entry) disk.SetEntry(0, entry, {0x83, 63, 9});
    RecordImage actual(sizeof(PartitionInformation));
    GetAllPartitionInfo(static_cast<PartitionInformation*>(actual.Data()));
    EXPECT_EQ(actual.NumberAt(0), 26);
    const auto* bytes = static_cast<const std::uint8_t*>(actual.Data());
    for (std::size_t i = 0; i < RecordImage::kGuard; ++i)
        EXPECT_EQ(bytes[sizeof(PartitionInformation) + i], RecordImage::kMark) << i;
}

TEST_F(LogicalPartitionsTest, UnlistedTypesDoNotEndAChain) {
    std::vector<std::uint8_t> types(40, 0x07);
    types.push_back(0x83);
    EXPECT_THAT(EntriesOfChain(types), ElementsAre("/dev/hda45 Linux 20992"));
}

TEST_F(LogicalPartitionsTest, ExtendedPartitionBeyondTheDiskListsNothing) {
    PutDisk('a', 1000).SetEntry(0, 1, {0x0F, 50 * kCylinder, 10 * kCylinder});
    EXPECT_THAT(Entries(), IsEmpty());
}

}  // namespace
