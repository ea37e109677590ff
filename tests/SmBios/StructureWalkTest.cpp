// SPDX-License-Identifier: MIT
//
// GetItem: which structure it hands back, and what ends its walk.
#include <cstring>

#include "support/SmBiosTest.h"

namespace {

class StructureWalkTest : public SmBiosTest {
protected:
    // Handle of a structure, or -1 when there is none.
    int Handle(int type, int index) {
        const std::unique_ptr<BiosDataItem> item = Item(type, index);
        return item ? item->GetHandle() : -1;
    }

    void AddMany(int count, std::uint8_t type, int firstHandle) {
        for (int i = 0; i < count; ++i)
            table.Add(type, static_cast<std::uint16_t>(firstHandle + i), 4);
    }

    SmBios& OpenWith(int structures, int length) {
        sim::SmbiosPlacement placement;
        placement.structures = structures;
        placement.length = length;
        return Open(placement);
    }
};

TEST_F(StructureWalkTest, StructuresOfATypeAreCountedFromOne) {
    table.Add(0, 10, 4);
    table.Add(4, 11, 4);
    table.Add(7, 12, 4);
    table.Add(4, 13, 4);
    table.Add(4, 14, 4);
    Open();
    EXPECT_EQ(Handle(4, 1), 11);
    EXPECT_EQ(Handle(4, 2), 13);
    EXPECT_EQ(Handle(4, 3), 14);
    EXPECT_EQ(Handle(4, 4), -1);
    EXPECT_EQ(Handle(7, 1), 12);
    EXPECT_EQ(Handle(7, 2), -1);
    EXPECT_EQ(Handle(9, 1), -1);
}

TEST_F(StructureWalkTest, ItemOfTypeZeroIsTheFirstStructureWhateverItsTypeAndTheIndex) {
    table.Add(3, 0x33, 4).String("first");
    table.Add(0, 0x44, 4).String("second");
    Open();
    for (const int index : {0, 1, 2, 5, 255}) {
        const auto item = Item(0, index);
        ASSERT_NE(item, nullptr) << index;
        EXPECT_EQ(item->GetType(), 3);
        EXPECT_EQ(item->GetHandle(), 0x33);
        EXPECT_STREQ(item->GetString(1), "first");
    }
}

TEST_F(StructureWalkTest, ItemOfTypeZeroIgnoresTheCount) {
    table.Add(3, 0x33, 4);
    OpenWith(0, -1);
    EXPECT_EQ(Handle(0, 1), 0x33);
    EXPECT_EQ(Handle(3, 1), -1);
}

TEST_F(StructureWalkTest, IndexZeroNeverMatches) {
    AddMany(300, 8, 0);
    Open();
    EXPECT_EQ(Handle(8, 0), -1);
}

TEST_F(StructureWalkTest, TypesUpTo255AreFound) {
    table.Add(0, 1, 4);
    for (int type = 1; type < 256; ++type)
        table.Add(static_cast<std::uint8_t>(type), static_cast<std::uint16_t>(0x100 + type), 4);
    Open();
    for (int type = 1; type < 256; ++type) EXPECT_EQ(Handle(type, 1), 0x100 + type);
}

TEST_F(StructureWalkTest, EndOfTableStructureDoesNotEndTheWalk) {
    table.Add(127, 1, 4);
    table.Add(4, 2, 4);
    Open();
    EXPECT_EQ(Handle(127, 1), 1);
    EXPECT_EQ(Handle(4, 1), 2);
}

TEST_F(StructureWalkTest, CountBelowTheTruthEndsTheWalk) {
    AddMany(5, 4, 1);
    OpenWith(3, -1);
    EXPECT_EQ(Handle(4, 3), 3);
    EXPECT_EQ(Handle(4, 4), -1);
}

TEST_F(StructureWalkTest, StructuresOfOtherTypesCountToo) {
    AddMany(2, 9, 1);
    AddMany(2, 4, 3);
    OpenWith(3, -1);
    EXPECT_EQ(Handle(4, 1), 3);
    EXPECT_EQ(Handle(4, 2), -1);
}

TEST_F(StructureWalkTest, CountAboveTheTruthIsBoundedByTheLength) {
    AddMany(5, 4, 1);
    OpenWith(0xFFFF, -1);
    EXPECT_EQ(Handle(4, 5), 5);
    EXPECT_EQ(Handle(4, 6), -1);
    EXPECT_EQ(Handle(9, 1), -1);
}

TEST_F(StructureWalkTest, LengthBelowTheTruthEndsTheWalk) {
    AddMany(5, 4, 1);  // six bytes each
    OpenWith(5, 18);
    EXPECT_EQ(Handle(4, 3), 3);
    EXPECT_EQ(Handle(4, 4), -1);
}

TEST_F(StructureWalkTest, StructureThatStartsWithinTheLengthIsVisited) {
    AddMany(5, 4, 0x101);
    OpenWith(5, 19);  // of the fourth, the type byte alone
    const auto item = Item(4, 4);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetFormatedDataLength(), 0);
    EXPECT_EQ(item->GetHandle(), 0);
    EXPECT_EQ(Handle(4, 5), -1);
}

TEST_F(StructureWalkTest, StringSetCutByTheLengthEndsThere) {
    table.Add(1, 1, 8).String(4, "Manufacturer");
    OpenWith(1, 8 + 5);
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Copied("Manuf"));
}

TEST_F(StructureWalkTest, FormattedAreaCutByTheLengthReadsAsZeroThere) {
    table.Add(4, 1, 35).Word(20, 0x0E10).Word(22, 0x0E10);
    OpenWith(1, 21);  // the low byte of the maximum speed is the last
    EXPECT_EQ(Ask(&SmBios::GetProcessorMaxSpeed, 1), Terminated("16 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorCurrentSpeed, 1), Refused("Unknown"));
    const auto item = Item(4, 1);
    EXPECT_EQ(item->GetFormatedDataLength(), 35);
    EXPECT_EQ(item->GetFormatedData()[20], 0x10);
    for (int i = 21; i <= 35; ++i) EXPECT_EQ(item->GetFormatedData()[i], 0) << i;
    EXPECT_STREQ(item->GetString(1), "");
    EXPECT_EQ(Handle(4, 2), -1);
}

TEST_F(StructureWalkTest, StructureOfTheTablesLastTwoBytesHasTheLengthThatTheLastOneSays) {
    table.Add(9, 1, 4);
    const std::uint8_t header[] = {4, 255, 0, 0};
    table.Raw(header);
    OpenWith(2, 6 + 2);  // the type byte is the last but one, the length the last
    const auto item = Item(4, 1);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetFormatedDataLength(), 255);
    for (int i = 2; i <= 255; ++i) EXPECT_EQ(item->GetFormatedData()[i], 0) << i;
    EXPECT_STREQ(item->GetString(1), "");
    EXPECT_EQ(Handle(4, 2), -1);
}

TEST_F(StructureWalkTest, LengthAboveTheTruthWalksTheZeroesAfterTheTable) {
    AddMany(2, 4, 1);
    OpenWith(1000, 100);
    EXPECT_EQ(Handle(4, 2), 2);
    EXPECT_EQ(Handle(4, 3), -1);
}

TEST_F(StructureWalkTest, TableOfNoBytesHoldsNoStructure) {
    table.Add(4, 1, 4);
    OpenWith(1, 0);
    EXPECT_EQ(reader->InitOK, 1);
    EXPECT_EQ(Handle(4, 1), -1);
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Missing());
}

TEST_F(StructureWalkTest, StructuresShorterThanTheirHeaderAreWalkedForward) {
    const std::uint8_t bytes[] = {
        5, 2, 0,    0,           // ends in its own handle
        6, 0, 'x',  0,    0,     // formatted area of no bytes
        8, 3, 0x0A, 'y',  0, 0,  // the handle's high byte is a string
        4, 4, 0x21, 0x00, 0, 0,  //
    };
    table.Raw(bytes);
    OpenWith(4, -1);
    EXPECT_EQ(Handle(5, 1), 0);
    EXPECT_EQ(Handle(6, 1), 0x0078);
    EXPECT_EQ(Handle(8, 1), 0x790A);
    EXPECT_EQ(Handle(4, 1), 0x21);
    EXPECT_STREQ(Item(8, 1)->GetString(1), "y");
}

TEST_F(StructureWalkTest, TableOfZeroesIsWalkedToItsEnd) {
    table.Raw(sim::Bytes(0x400));
    OpenWith(0xFFFF, 0x400);
    EXPECT_EQ(Handle(4, 1), -1);
    const auto item = Item(0, 1);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetFormatedDataLength(), 0);
}

TEST_F(StructureWalkTest, TableWithoutAnyDoubleZeroIsOneStructure) {
    table.Raw(sim::Bytes(0x400, 4));  // type 4, length 4, handle 0x0404, then one long string
    OpenWith(0xFFFF, 0x400);
    EXPECT_EQ(Handle(4, 1), 0x0404);
    EXPECT_EQ(Handle(4, 2), -1);
    EXPECT_EQ(std::strlen(Item(4, 1)->GetString(1)), 0x400u - 4);
}

TEST_F(StructureWalkTest, TwoHundredFiftyFiveStructuresOfATypeAreReached) {
    AddMany(257, 4, 1);
    Open();
    EXPECT_EQ(Handle(4, 255), 255);
    EXPECT_EQ(Handle(4, 256), -1);  // index 0
    EXPECT_EQ(Handle(4, 257), 1);   // index 1
}

TEST_F(StructureWalkTest, GettersSeeTheLowByteOfTheirIndex) {
    for (int i = 1; i <= 3; ++i)
        table.Add(4, static_cast<std::uint16_t>(i), 35).Word(18, static_cast<std::uint16_t>(i));
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 2), Terminated("2 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 256 + 3), Terminated("3 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, -255), Terminated("1 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 256), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 0), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, -1), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 4), Missing());
}

TEST_F(StructureWalkTest, DmiEntryPointBoundsTheWalkByItsOwnCountAndLength) {
    AddMany(5, 4, 1);
    sim::SmbiosPlacement placement;
    placement.anchor = sim::SmbiosPlacement::Anchor::kDmi;
    placement.structures = 3;
    Open(placement);
    EXPECT_EQ(Handle(4, 3), 3);
    EXPECT_EQ(Handle(4, 4), -1);
    placement.structures = -1;
    placement.length = 12;
    Open(placement);
    EXPECT_EQ(Handle(4, 2), 2);
    EXPECT_EQ(Handle(4, 3), -1);
}

TEST_F(StructureWalkTest, WithNeitherMatchFlagOnlyTypeZeroIsAnswered) {
    table.Add(3, 0x33, 4);
    Open();
    reader->MatchSMBIOS = 0;
    EXPECT_EQ(Handle(3, 1), -1);
    EXPECT_EQ(Handle(0, 1), 0x33);
}

TEST_F(StructureWalkTest, WalkNeedsNoAccessToTheMachine) {
    AddMany(10, 4, 1);
    Open();
    server.GetLog().Clear();
    EXPECT_EQ(Handle(4, 10), 10);
    EXPECT_TRUE(server.GetLog().Accesses().empty());
}

}  // namespace
