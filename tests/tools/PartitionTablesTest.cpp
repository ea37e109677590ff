// SPDX-License-Identifier: MIT
//
// What of a disk is kept: partition tables, and of what lies in their place no more than the
// library makes of it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/capture/PartitionTables.h"

namespace {

using testing::ElementsAre;
using testing::Key;
using tool::CapturedBytes;

constexpr std::uint64_t kCylinder = 16065;

class PartitionTablesTest : public testing::Test {
protected:
    // A sector full of some file's text.
    static CapturedBytes Content() { return CapturedBytes(512, 's'); }

    static CapturedBytes BootRecord() {
        CapturedBytes sector = Content();
        std::fill(sector.begin() + 446, sector.end(), std::uint8_t{0});
        sector[510] = 0x55;
        sector[511] = 0xAA;
        return sector;
    }

    static void SetEntry(CapturedBytes& sector, std::size_t entry, std::uint8_t type,
                         std::uint32_t start, std::uint32_t count) {
        const std::size_t at = 446 + 16 * entry;
        sector[at + 4] = type;
        for (std::size_t i = 0; i < 4; ++i) {
            sector[at + 8 + i] = static_cast<std::uint8_t>(start >> 8 * i);
            sector[at + 12 + i] = static_cast<std::uint8_t>(count >> 8 * i);
        }
    }

    std::map<std::uint64_t, CapturedBytes> Kept() const {
        return tool::PartitionTables([this](std::uint64_t sector) {
            const auto known = disk.find(sector);
            return known != disk.end() ? known->second : Content();
        });
    }

    static std::size_t Count(const CapturedBytes& sector, std::uint8_t byte) {
        return static_cast<std::size_t>(std::count(sector.begin(), sector.end(), byte));
    }

    std::map<std::uint64_t, CapturedBytes> disk;
};

TEST_F(PartitionTablesTest, OfABootRecordTheTableIsKeptWithoutItsCode) {
    disk[0] = BootRecord();
    SetEntry(disk[0], 0, 0x83, 63, 1000);
    const auto kept = Kept();
    ASSERT_THAT(kept, ElementsAre(Key(0)));
    EXPECT_EQ(Count(kept.at(0), 's'), 0u);
    EXPECT_TRUE(std::equal(disk[0].begin() + 446, disk[0].end(), kept.at(0).begin() + 446));
}

TEST_F(PartitionTablesTest, ChainOfLogicalPartitionsIsFollowedByCylinders) {
    disk[0] = BootRecord();
    SetEntry(disk[0], 1, 0x0F, 10 * kCylinder + 5, 1000000);
    disk[10 * kCylinder] = BootRecord();
    SetEntry(disk[10 * kCylinder], 0, 0x83, 63, 2 * kCylinder);
    SetEntry(disk[10 * kCylinder], 1, 0x05, 1, 1);
    disk[13 * kCylinder] = BootRecord();
    SetEntry(disk[13 * kCylinder], 0, 0x82, 63, 100);
    EXPECT_THAT(Kept(), ElementsAre(Key(0), Key(10 * kCylinder), Key(13 * kCylinder)));
}

// A disk whose partitions do not begin on cylinders: the library takes a file's content for a
// table.
TEST_F(PartitionTablesTest, OfAFilesContentNoMoreIsKeptThanTheLibraryShows) {
    disk[0] = BootRecord();
    SetEntry(disk[0], 0, 0x0F, 10 * kCylinder + 2048, 1000000);
    const auto kept = Kept();
    const std::uint64_t place = 10 * kCylinder;
    ASSERT_TRUE(kept.contains(place));
    // Four bytes of the size, and that the second entry has a type.
    EXPECT_EQ(Count(kept.at(place), 's'), 4u);
    EXPECT_EQ(Count(kept.at(place), 0), 507u);
}

TEST_F(PartitionTablesTest, OfADiskWithoutATableNothingIsKept) {
    EXPECT_THAT(Kept(), ElementsAre());
    disk[0] = Content();
    disk[0][446 + 4] = 0x83;
    const auto kept = Kept();
    ASSERT_THAT(kept, ElementsAre(Key(0)));
    EXPECT_EQ(Count(kept.at(0), 's'), 4u);
    EXPECT_EQ(Count(kept.at(0), 0x83), 1u);
}

TEST_F(PartitionTablesTest, EndlessChainIsCut) {
    disk[0] = BootRecord();
    SetEntry(disk[0], 0, 0x0F, kCylinder, 1000000);
    for (std::uint64_t cylinder = 1; cylinder < 3000; ++cylinder) {
        disk[cylinder * kCylinder] = BootRecord();
        SetEntry(disk[cylinder * kCylinder], 0, 0x99, 63, 1);
        SetEntry(disk[cylinder * kCylinder], 1, 0x05, 1, 1);
    }
    EXPECT_EQ(Kept().size(), tool::kMaxKeptSectors);
}

TEST_F(PartitionTablesTest, HalfAMarkIsNotThatOfABootRecord) {
    disk[0] = Content();
    disk[0][510] = 0x55;
    disk[0][446 + 4] = 0x83;
    const auto kept = Kept();
    ASSERT_THAT(kept, ElementsAre(Key(0)));
    EXPECT_EQ(kept.at(0)[510], 0);
    EXPECT_EQ(Count(kept.at(0), 's'), 4u);
}

// The library takes the first sector for the table of the logical partition, too.
TEST_F(PartitionTablesTest, OfAnExtendedPartitionOnTheFirstCylinderBothReadingsAreKept) {
    disk[0] = Content();
    SetEntry(disk[0], 0, 0x0F, 63, 5);
    SetEntry(disk[0], 1, 0x99, 0, 0);
    CapturedBytes expected(512);
    SetEntry(expected, 0, 0x0F, 63, 5);
    SetEntry(expected, 1, 0x05, 0, 0);
    EXPECT_EQ(Kept().at(0), expected);
    disk[0] = BootRecord();
    SetEntry(disk[0], 0, 0x0F, 63, 5);
    EXPECT_EQ(Kept().at(0)[446 + 4], 0x0F) << "the same of both";
}

}  // namespace
