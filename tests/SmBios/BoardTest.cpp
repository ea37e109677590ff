// SPDX-License-Identifier: MIT
//
// BIOS, system and base board texts, and the bounded copy that they share.
#include "support/SmBiosTest.h"

namespace {

class BoardTest : public SmBiosTest {
protected:
    // A base board whose five texts start with `name`.
    void AddBoard(const std::string& name, int contained, std::uint8_t length = 17) {
        sim::SmbiosStructure& board = table.Add(2, handle++, length);
        board.String(4, name + " maker").String(5, name + " product");
        board.String(6, name + " version").String(7, name + " serial").String(8, name + " tag");
        if (length > 14) board.Byte(14, static_cast<std::uint8_t>(contained));
    }

    void ExpectBoard(const std::string& name) {
        EXPECT_EQ(Ask(&SmBios::GetBoardManufacturer, 32), Copied(name + " maker"));
        EXPECT_EQ(Ask(&SmBios::GetBoardProduct, 32), Copied(name + " product"));
        EXPECT_EQ(Ask(&SmBios::GetBoardVersion, 32), Copied(name + " version"));
        EXPECT_EQ(Ask(&SmBios::GetBoardSerialNo, 32), Copied(name + " serial"));
        EXPECT_EQ(Ask(&SmBios::GetBoardAssetTag, 32), Copied(name + " tag"));
    }

    void ExpectNoBoard() {
        EXPECT_EQ(Ask(&SmBios::GetBoardManufacturer, 32), Missing());
        EXPECT_EQ(Ask(&SmBios::GetBoardProduct, 32), Missing());
        EXPECT_EQ(Ask(&SmBios::GetBoardVersion, 32), Missing());
        EXPECT_EQ(Ask(&SmBios::GetBoardSerialNo, 32), Missing());
        EXPECT_EQ(Ask(&SmBios::GetBoardAssetTag, 32), Missing());
    }

    std::uint16_t handle = 0x200;
};

TEST_F(BoardTest, BiosTextsComeFromTheFirstStructure) {
    table.Add(0, 0, 20).String(8, "10/31/02").String(4, "Vendor").String(5, "Version");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Vendor"));
    EXPECT_EQ(Ask(&SmBios::GetBiosVersion, 32), Copied("Version"));
    EXPECT_EQ(Ask(&SmBios::GetBiosReleaseDate, 32), Copied("10/31/02"));
}

TEST_F(BoardTest, BiosTextsComeFromTheFirstStructureEvenIfItIsOfAnotherType) {
    table.Add(9, 0, 12).String(4, "Slot").String(5, "X").String(8, "Y");
    table.Add(0, 1, 20).String(4, "Vendor").String(5, "Version").String(8, "Date");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Slot"));
    EXPECT_EQ(Ask(&SmBios::GetBiosVersion, 32), Copied("X"));
    EXPECT_EQ(Ask(&SmBios::GetBiosReleaseDate, 32), Copied("Y"));
}

TEST_F(BoardTest, SystemTextsComeFromTheFirstSystemStructure) {
    table.Add(0, 0, 20);
    table.Add(1, 1, 8).String(7, "SN1").String(6, "V1").String(5, "Product").String(4, "Maker");
    table.Add(1, 2, 8).String(4, "Other").String(5, "Other").String(6, "Other").String(7, "Other");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Copied("Maker"));
    EXPECT_EQ(Ask(&SmBios::GetSysProductname, 32), Copied("Product"));
    EXPECT_EQ(Ask(&SmBios::GetSysVersion, 32), Copied("V1"));
    EXPECT_EQ(Ask(&SmBios::GetSystemSerialNumber, 32), Copied("SN1"));
}

TEST_F(BoardTest, MissingSystemStructureAnswersMinusOne) {
    table.Add(0, 0, 20);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetSysProductname, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetSysVersion, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetSystemSerialNumber, 32), Missing());
    ExpectNoBoard();
}

TEST_F(BoardTest, MissingStringsAnswerMinusOne) {
    table.Add(0, 0, 20);
    table.Add(1, 1, 8).String(4, "Maker").Byte(5, 0).Byte(6, 21).Byte(7, 4);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetBiosVersion, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetBiosReleaseDate, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetSysProductname, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetSysVersion, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetSystemSerialNumber, 32), Missing());
}

TEST_F(BoardTest, StringNumbersJustPastTheLastStringCopyAnEmptyText) {
    table.Add(1, 1, 8).String(4, "Maker").Byte(5, 2).Byte(6, 3);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetSysProductname, 32), NothingWritten());
    EXPECT_EQ(Ask(&SmBios::GetSysVersion, 32), NothingWritten());
}

TEST_F(BoardTest, FieldsPastAShortStructureReadAsZero) {
    table.Add(1, 1, 5).String(4, "Maker").String("Product");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Copied("Maker"));
    EXPECT_EQ(Ask(&SmBios::GetSysProductname, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetSystemSerialNumber, 32), Missing());
}

TEST_F(BoardTest, BoundedCopyTakesAtMostSizeMinusOneBytesAndNoTerminator) {
    table.Add(1, 1, 8).String(4, "0123456789");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 12), Copied("0123456789"));
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 11), Copied("0123456789"));
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 10), Copied("012345678"));
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 2), Copied("0"));
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 1), NothingWritten());
}

TEST_F(BoardTest, BoundedCopyTakesBytesAsTheyAre) {
    table.Add(1, 1, 8).String(4, " \x01 \xFF-tail  ");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Copied(" \x01 \xFF-tail  "));
}

TEST_F(BoardTest, OnlyBoardIsTakenWhateverItContains) {
    AddBoard("only", 3);
    Open();
    ExpectBoard("only");
}

TEST_F(BoardTest, FirstOfSeveralBoardsThatContainsNothingIsTaken) {
    AddBoard("first", 2);
    AddBoard("second", 1);
    AddBoard("third", 0);
    AddBoard("fourth", 0);
    Open();
    ExpectBoard("third");
}

TEST_F(BoardTest, FirstBoardIsTakenWhenItContainsNothing) {
    AddBoard("first", 0);
    AddBoard("second", 0);
    Open();
    ExpectBoard("first");
}

TEST_F(BoardTest, BoardTooShortToStateItsContentIsTaken) {
    AddBoard("first", 2);
    AddBoard("second", 0, 13);
    AddBoard("third", 0);
    Open();
    ExpectBoard("second");
}

TEST_F(BoardTest, ContentBytePastABoardOfFourteenBytesReadsAsZero) {
    AddBoard("first", 2);
    AddBoard("second", 0, 14);
    AddBoard("third", 0);
    Open();
    ExpectBoard("second");
}

TEST_F(BoardTest, BoardOfFifteenBytesStatesItsContent) {
    AddBoard("first", 1, 15);
    AddBoard("second", 0, 15);
    Open();
    ExpectBoard("second");
}

TEST_F(BoardTest, SeveralBoardsThatAllContainObjectsAnswerMinusOne) {
    AddBoard("first", 2);
    AddBoard("second", 255);
    Open();
    ExpectNoBoard();
}

TEST_F(BoardTest, BoardTextsAreCutToTheSize) {
    AddBoard("only", 0);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetBoardManufacturer, 5), Copied("only"));
    EXPECT_EQ(Ask(&SmBios::GetBoardProduct, 8), Copied("only pr"));
    EXPECT_EQ(Ask(&SmBios::GetBoardVersion, 3), Copied("on"));
    EXPECT_EQ(Ask(&SmBios::GetBoardSerialNo, 2), Copied("o"));
    EXPECT_EQ(Ask(&SmBios::GetBoardAssetTag, 1), NothingWritten());
}

TEST_F(BoardTest, BoardWithoutAStringAnswersMinusOneForItAlone) {
    table.Add(2, 1, 15).String(4, "maker").String(7, "serial");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetBoardManufacturer, 32), Copied("maker"));
    EXPECT_EQ(Ask(&SmBios::GetBoardProduct, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetBoardVersion, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetBoardSerialNo, 32), Copied("serial"));
    EXPECT_EQ(Ask(&SmBios::GetBoardAssetTag, 32), Missing());
}

TEST_F(BoardTest, EveryGetterIsAnsweredFromALegacyDmiTableToo) {
    table.Add(0, 0, 20).String(4, "Vendor");
    table.Add(1, 1, 8).String(5, "Product");
    AddBoard("only", 1);
    OpenDmi();
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Vendor"));
    EXPECT_EQ(Ask(&SmBios::GetSysProductname, 32), Copied("Product"));
    ExpectBoard("only");
}

TEST_F(BoardTest, TextForABufferOfNoBytesIsFoundAndNotCopied) {
    table.Add(0, 0, 20).String(4, "Vendor");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 0), NothingWritten());
}

}  // namespace
