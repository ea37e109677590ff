// SPDX-License-Identifier: MIT
//
// The slot number of a bank, derived from the text of its locator.
#include "support/MemorySummaryTest.h"

namespace {

class SlotNumberTest : public MemorySummaryTest {
protected:
    int SlotOfDevice(const std::string& locator) {
        NewTable();
        AddDevice(256, locator, "Bank");
        EXPECT_EQ(Summarise(), 0) << locator;
        EXPECT_EQ(info.quantity, 1) << locator;
        return info.bank[0].SlotNumber;
    }
};

TEST_F(SlotNumberTest, SlotNumberIsTheDigitAtTheEndOfTheLocator) {
    EXPECT_EQ(SlotOfDevice("DIMM3"), 3);
    EXPECT_EQ(SlotOfDevice("DIMM1A"), 5);
    EXPECT_EQ(SlotOfDevice("DIMM1B"), 6);
    EXPECT_EQ(SlotOfDevice("DIMM12"), 2);
}

TEST_F(SlotNumberTest, SlotNumberFollowsTheLetterAfterTheDigit) {
    EXPECT_EQ(SlotOfDevice("DIMM0"), 0);
    EXPECT_EQ(SlotOfDevice("DIMM9"), 9);
    EXPECT_EQ(SlotOfDevice("DIMM0A"), 1);
    EXPECT_EQ(SlotOfDevice("DIMM9B"), 38);
    EXPECT_EQ(SlotOfDevice("2A"), 9);
    EXPECT_EQ(SlotOfDevice("DIMM2A on board"), 9);
    EXPECT_EQ(SlotOfDevice("7"), 7);
}

TEST_F(SlotNumberTest, SlotNumberStaysZeroWhereOtherCharactersFollow) {
    EXPECT_EQ(SlotOfDevice("DIMM"), 0);
    EXPECT_EQ(SlotOfDevice("DIMM1C"), 0);
    EXPECT_EQ(SlotOfDevice("DIMM1a"), 0);
    EXPECT_EQ(SlotOfDevice("DIMM 4 "), 0);
    EXPECT_EQ(SlotOfDevice("A1-"), 0);
}

TEST_F(SlotNumberTest, LaterDigitsOverwriteEarlierOnes) {
    EXPECT_EQ(SlotOfDevice("J1A DIMM2B"), 10);
    EXPECT_EQ(SlotOfDevice("CPU1B DIMM3"), 3);
    EXPECT_EQ(SlotOfDevice("1A2C"), 5);  // the second digit changes nothing
    EXPECT_EQ(SlotOfDevice("21B"), 6);
}

TEST_F(SlotNumberTest, ShorterLocatorKeepsTheTailOfALongerOneBefore) {
    AddDevice(256, "DIMM SLOT 7", "Bank");
    AddDevice(256, "DIMM2", "Bank");  // "DIMM2SLOT 7"
    AddDevice(256, "X", "Bank");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.bank[0].SlotNumber, 7);
    EXPECT_EQ(info.bank[1].SlotNumber, 7);
    EXPECT_EQ(info.bank[2].SlotNumber, 7);
}

TEST_F(SlotNumberTest, DeviceWithoutALocatorKeepsTheOneBefore) {
    AddDevice(256, "DIMM1", "Bank");
    table.Add(17, 9, 27).Word(12, 256).String(17, "Bank").String(16, "DIMM5");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 2);
    EXPECT_EQ(info.bank[1].SlotNumber, 1);
}

TEST_F(SlotNumberTest, LocatorsOfEmptySocketsLeaveNoTail) {
    AddDevice(256, "A3", "Bank");
    AddDevice(0, "LONG SLOT 8", "Bank");
    AddDevice(256, "B4", "Bank");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.bank[1].SlotNumber, 4);
}

TEST_F(SlotNumberTest, TailOfAModuleLocatorSpoilsTheMatchWithItsDevice) {
    AddController({1, 2});
    AddModule(1, 8, 0x0100).String(4, "DIMM SLOT 7");
    AddModule(2, 8, 0x0100).String(4, "DIMM2");
    AddDevice(256, "DIMM2", "Bank").String(23, "Maker");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_STREQ(info.bank[1].manufacturer, "");
    EXPECT_EQ(info.bank[1].SlotNumber, 7);
}

TEST_F(SlotNumberTest, LocatorsAreCutToSixtyThreeCharacters) {
    EXPECT_EQ(SlotOfDevice(std::string(62, 'x') + "5"), 5);
    EXPECT_EQ(SlotOfDevice(std::string(61, 'x') + "43"), 3);
    EXPECT_EQ(SlotOfDevice(std::string(62, 'x') + "43"), 4);
    EXPECT_EQ(SlotOfDevice(std::string(63, 'x') + "3"), 0);
}

}  // namespace
