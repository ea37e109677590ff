// SPDX-License-Identifier: MIT
//
// The partition inventory of drives that no inventory finds and of disks with any byte in any place
// of their tables: nothing outside the fields is written, texts end within theirs, walks end.
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstring>

#include "storage/ReplacedCalls.h"
#include "storage/StorageTest.h"
#include "support/GuardedRecord.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HostileDiskTest : public StorageTest {
protected:
    HostileDiskTest() {
        drivesFound = {};
        seeksAreKept = false;
    }
    ~HostileDiskTest() override { atTable = nullptr; }

    sim::DiskImage& PutDisk(char letter, std::uint64_t sectors = 100) {
        const sim::IdeDrive drive = sim::MakeDisk("Disk", sectors, "1");
        Put(letter, drive);
        return *drive.image;
    }

    static void Find(int index, const char* controllerNo) {
        std::strcpy(drivesFound.driveArray[index].ControllerNo, controllerNo);
        drivesFound.quantityIDE = index + 1;
    }

    void Read() {
        box = marked;
        GetAllPartitionInfo(&box.info);
    }

    std::vector<std::string> Descriptions() {
        std::vector<std::string> texts;
        for (int i = 0; i < box.info.quantity; ++i)
            texts.emplace_back(box.info.partition[i].description);
        return texts;
    }

    // Whether everything from the entry of this index on is as it was before.
    bool UntouchedFrom(int index) {
        const std::size_t at = offsetof(PartitionInformation, partition) +
                               static_cast<std::size_t>(index) * sizeof(PARTITION);
        return std::memcmp(reinterpret_cast<const char*>(&box) + at,
                           reinterpret_cast<const char*>(&marked) + at, sizeof box - at) == 0;
    }

    // The call writes into `box`; `marked` is what it holds before.
    GuardedRecord<PartitionInformation> marked = Marked<PartitionInformation>();
    GuardedRecord<PartitionInformation> box = marked;
};

TEST_F(HostileDiskTest, DriveOfAnUnknownControllerNumberIsSkipped) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 1});
    PutDisk('d').SetEntry(0, 2, {0x83, 63, 1});
    Find(0, "Primary Master");
    Find(1, "Secondary Master");
    Find(2, "Secondry Slave");
    Read();
    EXPECT_THAT(Descriptions(), ElementsAre("/dev/hda1", "/dev/hdd2"));
    EXPECT_EQ(server.GetLog().Count("open"), 2u);
}

TEST_F(HostileDiskTest, OfMoreDrivesThanTheInventoryHoldsTheFirstAreRead) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 1});
    for (int i = 0; i < 24; ++i) Find(i, "Primary Master");
    drivesFound.quantityIDE = 25;
    Read();
    EXPECT_EQ(box.info.quantity, 24);
    EXPECT_EQ(server.GetLog().Count("open"), 24u);
    EXPECT_TRUE(UntouchedFrom(24));
}

TEST_F(HostileDiskTest, LessThanNoDrivesAreNone) {
    PutDisk('a').SetEntry(0, 1, {0x83, 63, 1});
    Find(0, "Primary Master");
    drivesFound.quantityIDE = -1;
    Read();
    EXPECT_THAT(Descriptions(), IsEmpty());
    EXPECT_THAT(server.GetLog().Lines(), IsEmpty());
    EXPECT_TRUE(UntouchedFrom(0));
}

// A disk whose first extended boot record lies in sector 1 and every later one in sector 2, which
// ends its chain.
class HostileTableTest : public HostileDiskTest {
protected:
    static constexpr std::size_t kTable = 446;

    HostileTableTest() : disk(PutDisk('a')) {
        Find(0, "Primary Master");
        atTable = [this](int descriptor) {
            const unsigned long sector = visited++ == 0 ? 1 : 2;
            long long position = 0;
            ASSERT_EQ(syscall(SYS__llseek, descriptor, 0, sector * 512 + kTable, &position, 0), 0);
        };
        SetEntries(0, {Entry(0x83, 63, 16002), Entry(0x0F, 2 * 16065, 4 * 16065),
                       Entry(0x82, 16065, 16065), Entry(0x0B, 7 * 16065, 20971520)});
        SetEntries(1, {Entry(0x83, 63, 16002), Entry(0x05, 16065, 16065)});
        SetEntries(2, {Entry(0x0C, 63, 16002)});
    }

    static sim::Bytes Entry(std::uint8_t type, std::uint32_t start, std::uint32_t size) {
        sim::Bytes bytes(16);
        bytes[4] = type;
        std::memcpy(&bytes[8], &start, sizeof start);
        std::memcpy(&bytes[12], &size, sizeof size);
        return bytes;
    }

    void SetEntries(std::uint64_t sector, const std::vector<sim::Bytes>& entries) {
        sim::Bytes& bytes = sectors.at(static_cast<std::size_t>(sector));
        bytes.assign(512, 0);
        std::size_t at = kTable;
        for (const sim::Bytes& entry : entries)
            for (const std::uint8_t byte : entry) bytes[at++] = byte;
        disk.Write(sector, bytes);
    }

    // Reads the disk with each value in this byte of a sector, and checks the record.
    void ReadWithEveryValueAt(std::uint64_t sector, std::size_t at) {
        sim::Bytes bytes = sectors.at(static_cast<std::size_t>(sector));
        for (unsigned value = 0; value < 0x100; ++value) {
            bytes[at] = static_cast<std::uint8_t>(value);
            disk.Write(sector, bytes);
            visited = 0;
            Read();
            ASSERT_NO_FATAL_FAILURE(CheckRecord()) << at << " " << value;
            server.GetLog().Clear();
        }
        disk.Write(sector, sectors.at(static_cast<std::size_t>(sector)));
    }

    void CheckRecord() {
        const int quantity = box.info.quantity;
        ASSERT_GE(quantity, 3);  // one damaged byte takes no more than the three of a chain
        ASSERT_LE(quantity, 9);
        for (int i = 0; i < quantity; ++i) {
            const PARTITION& entry = box.info.partition[i];
            const PARTITION& before = marked.info.partition[i];
            ASSERT_TRUE(Terminated(entry.description, sizeof entry.description));
            ASSERT_TRUE(Terminated(entry.FileSystem, sizeof entry.FileSystem));
            ASSERT_TRUE(Terminated(entry.size, 13));
            ASSERT_EQ(std::memcmp(entry.label, before.label, sizeof entry.label), 0);
            ASSERT_EQ(std::memcmp(entry.used, before.used, sizeof entry.used), 0);
            ASSERT_EQ(entry.isSystem, before.isSystem);
        }
        ASSERT_TRUE(UntouchedFrom(quantity));
    }

    sim::DiskImage& disk;
    std::array<sim::Bytes, 3> sectors;
    int visited = 0;
};

TEST_F(HostileTableTest, UndamagedTablesHaveFiveEntries) {
    Read();
    EXPECT_THAT(Descriptions(),
                ElementsAre("/dev/hda1", "/dev/hda5", "/dev/hda6", "/dev/hda3", "/dev/hda4"));
}

TEST_F(HostileTableTest, AnyByteOfTheBootRecordsTableStaysInTheFieldsOfItsEntries) {
    for (std::size_t i = 0; i < 64; ++i)
        ASSERT_NO_FATAL_FAILURE(ReadWithEveryValueAt(0, kTable + i));
}

TEST_F(HostileTableTest, AnyByteOfAnExtendedRecordsEntriesStaysInTheFieldsOfItsEntries) {
    for (std::size_t i = 0; i < 32; ++i)
        ASSERT_NO_FATAL_FAILURE(ReadWithEveryValueAt(1, kTable + i));
}

}  // namespace
