// SPDX-License-Identifier: MIT
//
// The partition inventory: which types are listed, how the chain of logical partitions is walked,
// and that every walk ends.
#include <cstring>
#include <sstream>

#include "Talvane.h"
#include "storage/StorageTest.h"
#include "support/RecordImage.h"

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t kCylinder = 16065;
constexpr std::uint64_t kDiskSectors = 78165360;

// Where an entry's fields lie, from the binary interface.
constexpr std::size_t EntryAt(std::size_t index) {
    return 4 + index * 324;
}
constexpr std::size_t kDescription = 0, kSize = 128, kFileSystem = 256;

class PartitionsTest : public StorageTest {
protected:
    // A new disk for the slot, empty but for what the caller writes.
    sim::DiskImage& PutDisk(char letter, std::uint64_t sectors = kDiskSectors) {
        const sim::IdeDrive drive = sim::MakeDisk("Disk", sectors, "1");
        Put(letter, drive);
        return *drive.image;
    }

    // Writes the extended boot record at a cylinder: its logical partition and whether another
    // record follows.
    static void WriteRecord(sim::DiskImage& disk, std::uint32_t cylinder, std::uint8_t type,
                            std::uint32_t sectors, std::uint8_t linkType = 0) {
        disk.SetEntry(std::uint64_t{cylinder} * kCylinder, 1, {type, 63, sectors});
        disk.SetEntry(std::uint64_t{cylinder} * kCylinder, 2, {linkType, 0, 0});
    }

    const PartitionInformation& Read() {
        record = {};
        GetAllPartitionInfo(&record);
        return record;
    }

    // "/dev/hda1 Linux 512" for each entry.
    std::vector<std::string> Entries() {
        Read();
        std::vector<std::string> texts;
        for (int i = 0; i < record.quantity; ++i) {
            const PARTITION& entry = record.partition[i];
            texts.push_back(std::string(entry.description) + " " + entry.FileSystem + " " +
                            entry.size);
        }
        return texts;
    }

    // The entries of a chain whose records lie one after the other from cylinder 1, each with a
    // partition that leaves the next record on the next cylinder.
    std::vector<std::string> EntriesOfChain(const std::vector<std::uint8_t>& types) {
        sim::DiskImage& disk = PutDisk('a');
        disk.SetEntry(0, 1, {0x0F, kCylinder, 1000 * kCylinder});
        for (std::size_t i = 0; i < types.size(); ++i)
            WriteRecord(disk, static_cast<std::uint32_t>(i + 1), types[i],
                        static_cast<std::uint32_t>(i + 1), i + 1 < types.size() ? 0x05 : 0);
        return Entries();
    }

    PartitionInformation record{};
};

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
    expected.Text(EntryAt(0) + kDescription, "/dev/hda3");
    expected.Text(EntryAt(0) + kSize, "10737418240");
    expected.Text(EntryAt(0) + kFileSystem, "Linux");
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

TEST_F(PartitionsTest, OfTwoHundredFiftySixLogicalTypesEightAreListed) {
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

TEST_F(PartitionsTest, Fat16IsListedInsideTheExtendedPartitionOnly) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x06, 63, 16002});
    disk.SetEntry(0, 2, {0x0F, kCylinder, 2 * kCylinder});
    WriteRecord(disk, 1, 0x06, 16002);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 FAT 16 8193024"));
}

TEST_F(PartitionsTest, NtfsIsListedAsAPrimaryOnly) {
    EXPECT_THAT(EntriesOfChain({0x07}), IsEmpty());
}

TEST_F(PartitionsTest, ExtendedPartitionOfAnotherTypeListsNothingOfItsContents) {
    sim::DiskImage& disk = PutDisk('a');
    WriteRecord(disk, 1, 0x83, 16002);
    for (const int type : {0x05, 0x85}) {
        disk.SetEntry(0, 1, {static_cast<std::uint8_t>(type), kCylinder, 2 * kCylinder});
        EXPECT_THAT(Entries(), IsEmpty()) << type;
    }
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

TEST_F(PartitionsTest, LogicalNumbersCountUnlistedTypes) {
    EXPECT_THAT(EntriesOfChain({0x83, 0x07, 0x82}),
                ElementsAre("/dev/hda5 Linux 1024", "/dev/hda7 Linux swap 1536"));
}

TEST_F(PartitionsTest, UnlistedLogicalOverwritesTheSizeOfTheEntryBefore) {
    EXPECT_THAT(EntriesOfChain({0x83, 0x07}), ElementsAre("/dev/hda5 Linux 1024"));
}

TEST_F(PartitionsTest, UnlistedLogicalOverwritesTheSizeOfAPrimaryToo) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x83, 63, 100});
    disk.SetEntry(0, 2, {0x0F, kCylinder, 2 * kCylinder});
    WriteRecord(disk, 1, 0x07, 7);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda1 Linux 3584"));
}

TEST_F(PartitionsTest, UnlistedLogicalOverwritesTheSizeOnTheDiskBeforeToo) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 100});
    sim::DiskImage& second = PutDisk('b');
    second.SetEntry(0, 1, {0x0F, kCylinder, 2 * kCylinder});
    WriteRecord(second, 1, 0x07, 7);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda1 Linux 3584"));
}

TEST_F(PartitionsTest, UnlistedLogicalBeforeTheFirstEntryWritesNothing) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, kCylinder, 2 * kCylinder});
    WriteRecord(disk, 1, 0x07, 7);
    RecordImage expected(sizeof(PartitionInformation));
    expected.Number(0, 0);
    RecordImage actual(sizeof(PartitionInformation));
    GetAllPartitionInfo(static_cast<PartitionInformation*>(actual.Data()));
    EXPECT_TRUE(SameBytes(expected, actual));
}

TEST_F(PartitionsTest, NextRecordIsTakenToLieOnTheCylinderAfterThePartition) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, 10 * kCylinder + 5, 1000 * kCylinder});  // rounded down to 10
    WriteRecord(disk, 10, 0x83, kCylinder - 1, 0x05);                   // next on 10 + 0 + 1
    WriteRecord(disk, 11, 0x83, kCylinder, 0x05);                       // next on 11 + 1 + 1
    WriteRecord(disk, 13, 0x83, 2 * kCylinder + 16064, 0x05);           // next on 13 + 2 + 1
    WriteRecord(disk, 16, 0x82, 3);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 Linux 8224768", "/dev/hda6 Linux 8225280",
                                       "/dev/hda7 Linux 24675328", "/dev/hda8 Linux swap 1536"));
}

TEST_F(PartitionsTest, OfEachRecordOfTheChainTheFirstTwoEntriesAreRead) {
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

TEST_F(PartitionsTest, WhereTheLinkPointsIsNotLookedAt) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, kCylinder, 1000 * kCylinder});
    disk.SetEntry(1 * kCylinder, 1, {0x83, 63, 1});
    disk.SetEntry(1 * kCylinder, 2, {0x05, 500 * kCylinder, 1});
    WriteRecord(disk, 2, 0x82, 2);
    WriteRecord(disk, 501, 0x0B, 3);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 Linux 512", "/dev/hda6 Linux swap 1024"));
}

TEST_F(PartitionsTest, AnyLinkTypeButZeroContinuesTheChain) {
    for (const int link : {0x01, 0x05, 0x0F, 0x83, 0xFF}) {
        sim::DiskImage& disk = PutDisk('a');
        disk.SetEntry(0, 1, {0x0F, kCylinder, 1000 * kCylinder});
        WriteRecord(disk, 1, 0x83, 1, static_cast<std::uint8_t>(link));
        WriteRecord(disk, 2, 0x83, 2);
        EXPECT_EQ(Entries().size(), 2u) << link;
    }
}

TEST_F(PartitionsTest, SeveralExtendedPartitionsAreEachNumberedFromFive) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x0F, 1 * kCylinder, kCylinder});
    disk.SetEntry(0, 2, {0x83, 63, 1});
    disk.SetEntry(0, 3, {0x0F, 2 * kCylinder, kCylinder});
    WriteRecord(disk, 1, 0x82, 2);
    WriteRecord(disk, 2, 0x0B, 3);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 Linux swap 1024", "/dev/hda2 Linux 512",
                                       "/dev/hda5 Win95 FAT32 1536"));
}

TEST_F(PartitionsTest, ExtendedPartitionOnTheFirstCylinderReadsTheBootRecordItself) {
    sim::DiskImage& disk = PutDisk('a');
    disk.SetEntry(0, 1, {0x83, 63, 5});
    disk.SetEntry(0, 3, {0x0F, kCylinder - 1, kCylinder});
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda1 Linux 2560", "/dev/hda5 Linux 2560"));
}

TEST_F(PartitionsTest, RecordsAboveFourGibibytesAreReached) {
    sim::DiskImage& disk = PutDisk('a', 4278189825u);
    disk.SetEntry(0, 1, {0x0F, 200000 * kCylinder, 1000 * kCylinder});
    WriteRecord(disk, 200000, 0x83, 63, 0x05);
    WriteRecord(disk, 200001, 0x82, 64);
    EXPECT_THAT(Entries(), ElementsAre("/dev/hda5 Linux 32256", "/dev/hda6 Linux swap 32768"));
}

TEST_F(PartitionsTest, TwentySixEntriesAreFilled) {
    const std::vector<std::string> entries = EntriesOfChain(std::vector<std::uint8_t>(26, 0x83));
    ASSERT_EQ(entries.size(), 26u);
    EXPECT_EQ(entries.back(), "/dev/hda30 Linux 13312");
}

TEST_F(PartitionsTest, TwentySeventhEntryEndsItsChainAndTheSizeBeforeStays) {
    sim::DiskImage& second = PutDisk('b');
    second.SetEntry(0, 1, {0x83, 63, 1});
    const std::vector<std::string> entries = EntriesOfChain(std::vector<std::uint8_t>(27, 0x83));
    ASSERT_EQ(entries.size(), 26u);
    EXPECT_EQ(entries.back(), "/dev/hda30 Linux 13312");
    EXPECT_THAT(server.GetLog().Lines(), Contains("close /dev/hdb -> 0"));
}

TEST_F(PartitionsTest, DiskAfterAFullRecordIsStillReadAndOverwritesTheLastSize) {
    sim::DiskImage& second = PutDisk('b');
    second.SetEntry(0, 1, {0x0F, kCylinder, 1000 * kCylinder});
    WriteRecord(second, 1, 0x07, 2);
    const std::vector<std::string> entries = EntriesOfChain(std::vector<std::uint8_t>(26, 0x83));
    ASSERT_EQ(entries.size(), 26u);
    EXPECT_EQ(entries.back(), "/dev/hda30 Linux 1024");
}

TEST_F(PartitionsTest, NothingIsWrittenPastAFullRecord) {
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

TEST_F(PartitionsTest, UnlistedTypesDoNotEndAChain) {
    std::vector<std::uint8_t> types(40, 0x07);
    types.push_back(0x83);
    EXPECT_THAT(EntriesOfChain(types), ElementsAre("/dev/hda45 Linux 20992"));
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

TEST_F(PartitionsTest, ExtendedPartitionBeyondTheDiskListsNothing) {
    PutDisk('a', 1000).SetEntry(0, 1, {0x0F, 50 * kCylinder, 10 * kCylinder});
    EXPECT_THAT(Entries(), IsEmpty());
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
