// SPDX-License-Identifier: MIT
//
// Sparse memory and the SMBIOS tables placed in it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <stdexcept>
#include <string>

#include "simulator/machine/PhysicalMemory.h"
#include "simulator/machine/SmbiosTable.h"

namespace {

using sim::Bytes;
using sim::PhysicalMemory;
using sim::SmbiosPlacement;
using testing::Each;
using testing::ElementsAre;

Bytes At(const PhysicalMemory& memory, std::uint64_t address, std::size_t size) {
    Bytes bytes(size, 0xEE);
    EXPECT_TRUE(memory.Read(address, bytes));
    return bytes;
}

std::uint32_t Number(const Bytes& bytes, std::size_t offset, unsigned size) {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < size; ++i) value |= std::uint32_t{bytes.at(offset + i)} << (8 * i);
    return value;
}

int Sum(const Bytes& bytes, std::size_t from, std::size_t count) {
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(from);
    return std::accumulate(begin, begin + static_cast<std::ptrdiff_t>(count), 0) % 256;
}

Bytes TwoStructures() {
    sim::SmbiosTable table;
    table.Add(4, 0x0400, 35).String(7, "Intel");
    table.Add(127, 0x7F00, 4);
    return table.Image();
}

TEST(PhysicalMemoryTest, UnwrittenBytesReadAsZero) {
    PhysicalMemory memory;
    EXPECT_EQ(memory.Size(), 64u << 20);
    EXPECT_THAT(At(memory, 0xF0000, 65536), Each(0));
}

TEST(PhysicalMemoryTest, BytesAcrossPagesAreKept) {
    PhysicalMemory memory;
    Bytes bytes(10000);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    memory.Write(0x1FFE, bytes);
    EXPECT_EQ(At(memory, 0x1FFE, 10000), bytes);
    EXPECT_THAT(At(memory, 0x1FFC, 3), ElementsAre(0, 0, 0));
    EXPECT_THAT(At(memory, 0x1FFE + 9999, 2), ElementsAre(bytes.back(), 0));
}

TEST(PhysicalMemoryTest, LaterBytesReplaceEarlierOnes) {
    PhysicalMemory memory;
    memory.Write(0x100, Bytes{1, 2, 3, 4});
    memory.Write(0x101, Bytes{9, 9});
    EXPECT_THAT(At(memory, 0x100, 4), ElementsAre(1, 9, 9, 4));
}

TEST(PhysicalMemoryTest, ReadPastTheEndFails) {
    PhysicalMemory memory;
    memory.Resize(0x2000);
    Bytes bytes(16, 0xEE);
    EXPECT_TRUE(memory.Read(0x1FF0, bytes));
    bytes.assign(16, 0xEE);
    EXPECT_FALSE(memory.Read(0x1FF1, bytes));
    EXPECT_FALSE(memory.Read(std::uint64_t{1} << 40, bytes));
    EXPECT_THAT(bytes, Each(0xEE)) << "a refused read delivers nothing";
}

TEST(PhysicalMemoryTest, SizeOrBytesPastFourGibibytesAreRefused) {
    PhysicalMemory memory;
    memory.Resize(std::uint64_t{4} << 30);
    memory.Write(0xFFFFFFFF, Bytes{7});
    EXPECT_THAT(At(memory, 0xFFFFFFFF, 1), ElementsAre(7));
    EXPECT_THROW(memory.Write(0xFFFFFFFF, Bytes(2)), std::out_of_range);
    EXPECT_THROW(memory.Resize((std::uint64_t{4} << 30) + 1), std::out_of_range);
}

TEST(SmbiosPlacementTest, EntryPointDescribesTheTable) {
    PhysicalMemory memory;
    const Bytes table = TwoStructures();
    memory.PlaceSmbios(table);
    const Bytes entry = At(memory, 0xF0010, 31);
    EXPECT_EQ(std::string(entry.begin(), entry.begin() + 4), "_SM_");
    EXPECT_EQ(std::string(entry.begin() + 16, entry.begin() + 21), "_DMI_");
    EXPECT_EQ(Sum(entry, 0, 31), 0);
    EXPECT_EQ(Sum(entry, 16, 15), 0);
    EXPECT_EQ(entry[5], 31);
    EXPECT_EQ(entry[6], 2);
    EXPECT_EQ(entry[7], 3);
    EXPECT_EQ(entry[30], 0x23);
    EXPECT_EQ(Number(entry, 8, 2), 35u + 6 + 1);
    EXPECT_EQ(Number(entry, 22, 2), table.size());
    EXPECT_EQ(Number(entry, 24, 4), 0xF0030u);
    EXPECT_EQ(Number(entry, 28, 2), 2u);
    EXPECT_EQ(At(memory, 0xF0030, table.size()), table);
}

TEST(SmbiosPlacementTest, DmiAnchorWritesTheOlderEntryPointAlone) {
    PhysicalMemory memory;
    memory.PlaceSmbios(TwoStructures(), {.anchor = SmbiosPlacement::Anchor::kDmi});
    const Bytes entry = At(memory, 0xF0010, 16);
    EXPECT_EQ(std::string(entry.begin(), entry.begin() + 5), "_DMI_");
    EXPECT_EQ(Sum(entry, 0, 15), 0);
    EXPECT_EQ(Number(entry, 8, 4), 0xF0020u);
    EXPECT_EQ(Number(entry, 12, 2), 2u);
}

TEST(SmbiosPlacementTest, GivenAddressesAndClaimsAreUsed) {
    PhysicalMemory memory;
    memory.PlaceSmbios(
        TwoStructures(),
        {.major = 2, .minor = 1, .entry = 0xFFFE0, .table = 0x8000, .structures = 99, .length = 7});
    const Bytes entry = At(memory, 0xFFFE0, 31);
    EXPECT_EQ(Number(entry, 22, 2), 7u);
    EXPECT_EQ(Number(entry, 24, 4), 0x8000u);
    EXPECT_EQ(Number(entry, 28, 2), 99u);
    EXPECT_EQ(entry[30], 0x21);
    EXPECT_EQ(At(memory, 0x8000, 2), (Bytes{4, 35}));
}

TEST(SmbiosPlacementTest, TableGoesIntoTheSegmentWhereItFits) {
    const auto address = [](std::uint32_t entry, std::size_t size) {
        PhysicalMemory memory;
        memory.PlaceSmbios(Bytes(size), {.entry = entry, .structures = 0, .length = 0});
        return Number(At(memory, entry, 31), 24, 4);
    };
    EXPECT_EQ(address(0xF0010, 0xFFD0), 0xF0030u);
    EXPECT_EQ(address(0xF0010, 0xFFD1), 0xE0000u);
    EXPECT_EQ(address(0xFFFE0, 1), 0xE0000u);
    EXPECT_EQ(address(0xFFFF0, 1), 0xE0000u) << "the entry point leaves the segment";
    EXPECT_EQ(address(0x8000, 1), 0xE0000u) << "the entry point lies below it";
    EXPECT_EQ(address(0xF0010, 0x10000), 0xE0000u);
    EXPECT_EQ(address(0xF0010, 0x10001), 0x100000u);
}

TEST(SmbiosPlacementTest, TableTooLongForTheEntryPointIsRefused) {
    PhysicalMemory memory;
    EXPECT_THROW(memory.PlaceSmbios(Bytes(0x10000)), std::length_error);
}

TEST(SmbiosPlacementTest, CutStructureIsNotCounted) {
    PhysicalMemory memory;
    Bytes table = TwoStructures();
    table.insert(table.end(), {4, 4, 0, 0, 'x'});
    memory.PlaceSmbios(table);
    EXPECT_EQ(Number(At(memory, 0xF0010, 31), 28, 2), 2u);
}

// A dump as dmidecode writes it: the entry point in the first 32 bytes, the table after it.
Bytes Dump(const std::string& anchor, const Bytes& table) {
    Bytes bytes(32 + table.size());
    std::copy(anchor.begin(), anchor.end(), bytes.begin());
    std::copy(table.begin(), table.end(), bytes.begin() + 32);
    return bytes;
}

TEST(SmbiosDumpTest, SmEntryPointIsKeptExceptForTheAddress) {
    const Bytes table = TwoStructures();
    Bytes bytes = Dump("_SM_", table);
    bytes[5] = 31;
    bytes[6] = 2;
    bytes[7] = 4;
    bytes[10] = 0x77;
    bytes[0x16] = static_cast<std::uint8_t>(table.size());
    bytes[0x18] = 32;
    bytes[0x1C] = 55;
    PhysicalMemory memory;
    memory.PlaceDump(bytes);
    const Bytes entry = At(memory, 0xF0010, 31);
    EXPECT_EQ(entry[7], 4);
    EXPECT_EQ(entry[10], 0x77);
    EXPECT_EQ(Number(entry, 24, 4), 0xF0030u);
    EXPECT_EQ(Number(entry, 28, 2), 55u);
    EXPECT_EQ(Sum(entry, 0, 31), 0);
    EXPECT_EQ(Sum(entry, 16, 15), 0);
    EXPECT_EQ(At(memory, 0xF0030, table.size()), table);
}

TEST(SmbiosDumpTest, OtherEntryPointIsReplacedByAnSmOne) {
    const Bytes table = TwoStructures();
    Bytes three = Dump("_SM3_", table);
    three[7] = 3;
    three[8] = 1;
    three[0x0C] = 0xFF;  // a maximum, more than there is
    three[0x10] = 32;
    Bytes older = Dump("_DMI_", table);
    older[6] = static_cast<std::uint8_t>(table.size());
    older[8] = 32;
    older[12] = 2;
    older[14] = 0x20;
    const std::pair<Bytes, std::uint32_t> kinds[] = {{three, 0x0103}, {older, 0x0002}};
    for (const auto& [bytes, version] : kinds) {
        PhysicalMemory memory;
        memory.PlaceDump(bytes);
        const Bytes entry = At(memory, 0xF0010, 31);
        EXPECT_EQ(std::string(entry.begin(), entry.begin() + 4), "_SM_");
        EXPECT_EQ(Number(entry, 6, 2), version);
        EXPECT_EQ(Number(entry, 22, 2), table.size());
        EXPECT_EQ(Number(entry, 28, 2), 2u);
        EXPECT_EQ(At(memory, 0xF0030, table.size()), table);
    }
}

TEST(SmbiosDumpTest, BytesThatAreNotADumpAreRefused) {
    PhysicalMemory memory;
    EXPECT_THROW(memory.PlaceDump(Bytes{}), std::runtime_error);
    EXPECT_THROW(memory.PlaceDump(Bytes(64)), std::runtime_error);
    for (const auto& [anchor, size] :
         {std::pair<std::string, std::size_t>{"_SM_", 31}, {"_SM3_", 24}, {"_DMI_", 15}}) {
        Bytes cut(size - 1);
        std::copy(anchor.begin(), anchor.end(), cut.begin());
        EXPECT_THROW(memory.PlaceDump(cut), std::runtime_error) << anchor;
    }
    Bytes outside = Dump("_SM_", {});
    outside[0x18] = 32;
    EXPECT_THROW(memory.PlaceDump(outside), std::runtime_error);
}

TEST(SmbiosSegmentTest, ImageIsPlacedAndOtherSizesAreRefused) {
    PhysicalMemory memory;
    Bytes image(65536);
    image.front() = 1;
    image.back() = 2;
    memory.PlaceSegment(image);
    EXPECT_EQ(At(memory, 0xF0000, 65536), image);
    EXPECT_THROW(memory.PlaceSegment(Bytes(65535)), std::runtime_error);
}

}  // namespace
