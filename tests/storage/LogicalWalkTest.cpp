// SPDX-License-Identifier: MIT
//
// The walk over extended boot records, called by itself on a descriptor of the caller's, and the
// system call that it moves with.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <vector>

#include "storage/ReplacedCalls.h"

namespace {

using ::testing::ElementsAre;

partition Entry(unsigned char type, unsigned start, unsigned sectors = 0) {
    partition entry = {};
    entry.sys_ind = type;
    for (int i = 0; i < 4; ++i) {
        entry.start4[i] = static_cast<unsigned char>(start >> (8 * i));
        entry.size4[i] = static_cast<unsigned char>(sectors >> (8 * i));
    }
    return entry;
}

// Since no seek moves it, the descriptor delivers its entries one after the other: a record's
// partition, its link, the next record's partition ...
class LogicalWalkTest : public ::testing::Test {
protected:
    LogicalWalkTest() : fd(memfd_create("chain", 0)) {
        seeks.clear();
        cylinderSteps = 0;
        seeksAreKept = true;
    }
    ~LogicalWalkTest() override { close(fd); }

    void Deliver(const std::vector<partition>& entries) {
        for (const partition& entry : entries) ASSERT_EQ(write(fd, &entry, sizeof entry), 16);
        ASSERT_EQ(lseek(fd, 0, SEEK_SET), 0);
    }

    int Walk(partition extended) {
        char device[] = "/dev/hdx";
        return get_logic_info_from_ext(fd, extended, scratch, &record, &count, device);
    }

    int fd;
    part_info scratch[26] = {};
    PartitionInformation record{};
    int count = 0;
};

TEST_F(LogicalWalkTest, ExtendedEntryOfTypeZeroIsNotWalked) {
    Deliver({Entry(0x83, 63, 1)});
    EXPECT_EQ(Walk(Entry(0, 16065)), 0);
    EXPECT_EQ(count, 0);
    EXPECT_THAT(seeks, ElementsAre());
}

TEST_F(LogicalWalkTest, AnyOtherTypeOfTheExtendedEntryIsWalked) {
    Deliver({Entry(0x83, 63, 1), Entry(0, 0)});
    EXPECT_EQ(Walk(Entry(0x05, 16065)), 1);
    EXPECT_EQ(count, 1);
}

TEST_F(LogicalWalkTest, MovesFromTheStartByCylindersAndThenToTheTable) {
    Deliver({Entry(0x83, 63, 16065), Entry(0x05, 0), Entry(0x83, 63, 1), Entry(0, 0)});
    EXPECT_EQ(Walk(Entry(0x0F, 2 * 16065 + 16064)), 2);
    const Seek start = {0, 0, SEEK_SET}, step = {0, 8225280, SEEK_CUR}, table = {0, 446, SEEK_CUR};
    EXPECT_THAT(seeks, ElementsAre(start, step, step, table, start, step, step, step, step, table));
}

TEST_F(LogicalWalkTest, RecordOnTheFirstCylinderTakesNoStep) {
    Deliver({Entry(0x83, 63, 1), Entry(0, 0)});
    EXPECT_EQ(Walk(Entry(0x0F, 16064)), 1);
    EXPECT_EQ(cylinderSteps, 0u);
}

TEST_F(LogicalWalkTest, CountGoesOnFromTheCallersValue) {
    Deliver({Entry(0x83, 63, 1), Entry(0, 0)});
    count = 5;
    EXPECT_EQ(Walk(Entry(0x0F, 16065)), 1);
    EXPECT_EQ(count, 6);
    EXPECT_STREQ(record.partition[5].description, "/dev/hdx5");
    EXPECT_STREQ(record.partition[5].FileSystem, "Linux");
    EXPECT_STREQ(record.partition[5].size, "512");
}

TEST_F(LogicalWalkTest, TypesAndSizesAreNotedInTheScratch) {
    Deliver({Entry(0x83, 63, 1), Entry(5, 0), Entry(0x07, 63, 2), Entry(5, 0), Entry(0x82, 63, 3),
             Entry(0, 0)});
    EXPECT_EQ(Walk(Entry(0x0F, 16065)), 3);
    EXPECT_EQ(scratch[0].filesys, 0x83);
    EXPECT_EQ(scratch[1].filesys, 0x07);
    EXPECT_EQ(scratch[2].filesys, 0x82);
    EXPECT_EQ(scratch[1].size, 1024u);
    EXPECT_EQ(scratch[3].filesys, 0);
}

TEST_F(LogicalWalkTest, ListedTypeWithoutAFreeEntryEndsTheChain) {
    Deliver({Entry(0x07, 63, 1), Entry(5, 0), Entry(0x83, 63, 1), Entry(5, 0), Entry(0x83, 63, 1),
             Entry(5, 0)});
    count = 26;
    EXPECT_EQ(Walk(Entry(0x0F, 16065)), 2);
    EXPECT_EQ(count, 26);
}

TEST_F(LogicalWalkTest, UnreadableDescriptorEndsAfterOneRecord) {
    close(fd);
    EXPECT_EQ(Walk(Entry(0x0F, 16065)), 1);
    EXPECT_EQ(count, 0);
}

// Records that never end: each has an unlisted type and a link.
class EndlessWalkTest : public LogicalWalkTest {
protected:
    void DeliverForever(unsigned char sectorsByte) {
        std::vector<partition> entries(40000, Entry(0x07, 63, sectorsByte));
        Deliver(entries);
        seeksAreKept = false;
    }
};

TEST_F(EndlessWalkTest, ChainOfUnlistedTypesEndsAfterTheCylinderSteps) {
    DeliverForever(1);
    const int visited = Walk(Entry(0x0F, 0));
    // 0 + 1 + 2 + ... + 8190 steps, the next record would take more than 2^25 in all.
    EXPECT_EQ(visited, 8192);
    EXPECT_LE(cylinderSteps, 1u << 25);
    EXPECT_GT(cylinderSteps + 8192, 1u << 25);
}

TEST_F(EndlessWalkTest, FarRecordsEndItSooner) {
    DeliverForever(1);
    const int visited = Walk(Entry(0x0F, 0xFFFFFFFF));
    EXPECT_EQ(visited, 125);
    EXPECT_LE(cylinderSteps, 1u << 25);
}

}  // namespace
