// SPDX-License-Identifier: MIT
//
// SMBIOS structures and tables, byte by byte.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "simulator/machine/SmbiosTable.h"

namespace {

using sim::Bytes;
using sim::SmbiosStructure;
using sim::SmbiosTable;

TEST(SmbiosStructureTest, StructureWithoutStringsEndsInTwoNuls) {
    EXPECT_EQ(SmbiosStructure(127, 0x7F01, 4).Image(), (Bytes{127, 4, 0x01, 0x7F, 0, 0}));
}

TEST(SmbiosStructureTest, FieldsAreLittleEndian) {
    SmbiosStructure structure(1, 0, 11);
    structure.Byte(4, 0xAA).Word(5, 0x1122).Dword(7, 0x33445566);
    EXPECT_EQ(structure.Image(),
              (Bytes{1, 11, 0, 0, 0xAA, 0x22, 0x11, 0x66, 0x55, 0x44, 0x33, 0, 0}));
}

TEST(SmbiosStructureTest, StringsAreNumberedFromOne) {
    SmbiosStructure structure(1, 0, 6);
    structure.String(4, "A").String("B").String(5, "C");
    EXPECT_EQ(structure.Image(), (Bytes{1, 6, 0, 0, 1, 3, 'A', 0, 'B', 0, 'C', 0, 0}));
}

TEST(SmbiosStructureTest, FieldPastTheFormattedAreaIsRefused) {
    SmbiosStructure structure(1, 0, 8);
    EXPECT_THROW(structure.Byte(8, 0), std::out_of_range);
    EXPECT_THROW(structure.Word(7, 0), std::out_of_range);
    EXPECT_THROW(structure.Dword(5, 0), std::out_of_range);
    EXPECT_THROW(structure.String(8, "x"), std::out_of_range);
    EXPECT_THROW(structure.Byte(static_cast<std::size_t>(-1), 0), std::out_of_range);
    EXPECT_EQ(structure.Image(), (Bytes{1, 8, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(SmbiosStructureTest, StringsThatWouldEndTheSetAreRefused) {
    SmbiosStructure structure(1, 0, 8);
    EXPECT_THROW(structure.String(""), std::invalid_argument);
    EXPECT_THROW(structure.String(std::string_view("a\0b", 3)), std::invalid_argument);
    for (int i = 0; i < 255; ++i) structure.String("x");
    EXPECT_THROW(structure.String("x"), std::length_error);
}

TEST(SmbiosStructureTest, LengthShorterThanTheHeaderStillHasTheHeader) {
    EXPECT_EQ(SmbiosStructure(1, 0x0203, 2).Image(), (Bytes{1, 2, 3, 2, 0, 0}));
}

TEST(SmbiosTableTest, StructuresAndRawBytesKeepTheirOrder) {
    SmbiosTable table;
    SmbiosStructure& first = table.Add(1, 0x0100, 5);
    table.Raw(Bytes{9, 9});
    for (int i = 0; i < 100; ++i) table.Add(2, 0, 4);
    first.Byte(4, 7);
    EXPECT_EQ(table.Structures(), 101u);
    const Bytes bytes = table.Image();
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 11), (Bytes{1, 5, 0, 1, 7, 0, 0, 9, 9, 2, 4}));
    EXPECT_EQ(bytes.size(), 7u + 2 + 100 * 6);
}

}  // namespace
