// SPDX-License-Identifier: MIT
//
// Writing structures.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "simulator/machine/SmbiosTable.h"

namespace {

using sim::Bytes;
using sim::SmbiosStructure;
using sim::SmbiosTable;

TEST(SmbiosStructure, WithoutStringsEndsInTwoNuls) {
    EXPECT_EQ(SmbiosStructure(127, 0x7F01, 4).bytes(), (Bytes{127, 4, 0x01, 0x7F, 0, 0}));
}

TEST(SmbiosStructure, FieldsAreLittleEndian) {
    SmbiosStructure structure(1, 0, 11);
    structure.byte(4, 0xAA).word(5, 0x1122).dword(7, 0x33445566);
    EXPECT_EQ(structure.bytes(),
              (Bytes{1, 11, 0, 0, 0xAA, 0x22, 0x11, 0x66, 0x55, 0x44, 0x33, 0, 0}));
}

TEST(SmbiosStructure, StringsAreNumberedFromOne) {
    SmbiosStructure structure(1, 0, 6);
    structure.string(4, "A").string("B").string(5, "C");
    EXPECT_EQ(structure.bytes(), (Bytes{1, 6, 0, 0, 1, 3, 'A', 0, 'B', 0, 'C', 0, 0}));
}

TEST(SmbiosStructure, NothingIsWrittenPastTheFormattedArea) {
    SmbiosStructure structure(1, 0, 8);
    EXPECT_THROW(structure.byte(8, 0), std::out_of_range);
    EXPECT_THROW(structure.word(7, 0), std::out_of_range);
    EXPECT_THROW(structure.dword(5, 0), std::out_of_range);
    EXPECT_THROW(structure.string(8, "x"), std::out_of_range);
    EXPECT_THROW(structure.byte(static_cast<std::size_t>(-1), 0), std::out_of_range);
    EXPECT_EQ(structure.bytes(), (Bytes{1, 8, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(SmbiosStructure, StringsThatWouldEndTheSetAreRefused) {
    SmbiosStructure structure(1, 0, 8);
    EXPECT_THROW(structure.string(""), std::invalid_argument);
    EXPECT_THROW(structure.string(std::string_view("a\0b", 3)), std::invalid_argument);
    for (int i = 0; i < 255; ++i) structure.string("x");
    EXPECT_THROW(structure.string("x"), std::length_error);
}

TEST(SmbiosStructure, ALengthShorterThanTheHeaderIsOnlyClaimed) {
    EXPECT_EQ(SmbiosStructure(1, 0x0203, 2).bytes(), (Bytes{1, 2, 3, 2, 0, 0}));
}

TEST(SmbiosTable, HoldsStructuresInOrder) {
    SmbiosTable table;
    SmbiosStructure& first = table.add(1, 0x0100, 5);
    table.raw(Bytes{9, 9});
    for (int i = 0; i < 100; ++i) table.add(2, 0, 4);
    first.byte(4, 7);
    EXPECT_EQ(table.structures(), 101u);
    const Bytes bytes = table.bytes();
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 11), (Bytes{1, 5, 0, 1, 7, 0, 0, 9, 9, 2, 4}));
    EXPECT_EQ(bytes.size(), 7u + 2 + 100 * 6);
}

}  // namespace
