// SPDX-License-Identifier: MIT
//
// The kernel's SMBIOS files: entry points of every kind, and tables that are too long.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string_view>

#include "simulator/host/SmbiosFiles.h"
#include "simulator/machine/PhysicalMemory.h"
#include "simulator/machine/SmbiosTable.h"

namespace {

using sim::Bytes;

// Three structures of 6, 10 and 6 bytes with their ends.
Bytes Table() {
    sim::SmbiosTable table;
    table.Add(1, 1, 4);
    table.Add(2, 2, 6).String(4, "A");
    table.Add(127, 3, 4);
    return table.Image();
}

TEST(SmbiosFilesTest, TableThatFitsIsWhole) {
    const Bytes table = Table();
    EXPECT_EQ(sim::WholeStructures(table, table.size()).size(), table.size());
    EXPECT_EQ(sim::WholeStructures(table, table.size() + 1).size(), table.size());
}

TEST(SmbiosFilesTest, LongTableEndsAfterItsLastWholeStructure) {
    const Bytes table = Table();
    ASSERT_EQ(table.size(), 21u);
    EXPECT_EQ(sim::WholeStructures(table, 20).size(), 15u);
    EXPECT_EQ(sim::WholeStructures(table, 15).size(), 15u);
    EXPECT_EQ(sim::WholeStructures(table, 14).size(), 6u);
    EXPECT_EQ(sim::WholeStructures(table, 6).size(), 6u);
    EXPECT_EQ(sim::WholeStructures(table, 5).size(), 0u);
}

TEST(SmbiosFilesTest, DamagedLongTableIsCutWithoutReadingPastIt) {
    // No end of strings, a length past the end, and half a header.
    EXPECT_EQ(sim::WholeStructures(Bytes{1, 4, 0, 0, 'A', 'B'}, 5).size(), 0u);
    EXPECT_EQ(sim::WholeStructures(Bytes{1, 0xFF, 0, 0, 0, 0}, 5).size(), 0u);
    // A zero byte alone ends no strings.
    EXPECT_EQ(sim::WholeStructures(Bytes{1, 4, 0, 0, 0, 'A', 0, 0, 1}, 8).size(), 8u);
    EXPECT_EQ(sim::WholeStructures(Bytes{1, 4, 0, 0, 0, 0, 1, 4, 0}, 8).size(), 6u);
}

Bytes EntryPoint(std::string_view anchor, std::size_t size) {
    Bytes bytes(size);
    std::copy(anchor.begin(), anchor.end(), bytes.begin());
    return bytes;
}

// The bytes at the address of the entry point that PlaceDump writes, and the table after it.
void ExpectTableInSegment(const Bytes& entryPoint, const Bytes& table) {
    sim::PhysicalMemory memory;
    memory.PlaceDump(sim::SmbiosDump(entryPoint, table));
    Bytes placed(4);
    ASSERT_TRUE(memory.Read(0xF0010, placed));
    EXPECT_EQ(std::string(placed.begin(), placed.end()), "_SM_");
    placed.resize(table.size());
    ASSERT_TRUE(memory.Read(0xF0030, placed));
    EXPECT_EQ(placed, table);
}

TEST(SmbiosFilesTest, TableLiesAfterAnAnchorInTheSegmentWhateverTheEntryPoint) {
    Bytes version2 = EntryPoint("_SM_", 31);
    version2[5] = 31;
    ExpectTableInSegment(version2, Table());
    ExpectTableInSegment(EntryPoint("_SM3_", 24), Table());
    ExpectTableInSegment(EntryPoint("_DMI_", 15), Table());
}

TEST(SmbiosFilesTest, OtherEntryPointsAreRefused) {
    EXPECT_THROW((void)sim::SmbiosDump({}, Table()), std::runtime_error);
    EXPECT_THROW((void)sim::SmbiosDump(EntryPoint("_XY_", 31), Table()), std::runtime_error);
    EXPECT_THROW((void)sim::SmbiosDump(EntryPoint("_SM_", 30), Table()), std::runtime_error);
    EXPECT_THROW((void)sim::SmbiosDump(EntryPoint("_SM3_", 33), Table()), std::runtime_error);
}

}  // namespace
