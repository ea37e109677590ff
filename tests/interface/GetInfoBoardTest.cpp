// SPDX-License-Identifier: MIT
//
// GetInfo for the board and BIOS record (0x10000) and the system record (0x10000000).
#include "support/FieldTable.h"
#include "support/InterfaceTest.h"

namespace {

constexpr unsigned long kBoard = 0x10000;
constexpr std::size_t kBoardSize = 208;
constexpr std::size_t kSystemSize = 80;

class GetInfoBoardTest : public InterfaceTest {
protected:
    void AddBios(const std::string& text) {
        table.Add(0, 0, 20).String(4, "V" + text).String(5, "R" + text).String(8, "D" + text);
    }
    void AddSystem(const std::string& text) {
        table.Add(1, 1, 8).String(4, "M" + text).String(5, "P" + text).String(6, "V" + text);
    }
    void AddBoard(const std::string& text) {
        table.Add(2, 2, 9)
            .String(4, "M" + text)
            .String(5, "P" + text)
            .String(6, "unused version")
            .String(7, "S" + text)
            .String(8, "unused tag");
    }
};

TEST_F(GetInfoBoardTest, SixTextsAreFilledAndTheRestIsLeftAlone) {
    AddBios("endor");
    AddBoard("board");
    Place();
    ExpectRecord(kBoard, RecordImage(kBoardSize),
                 RecordImage(kBoardSize)
                     .Copied(0, "Pboard")      // ProductName
                     .Copied(32, "Rendor")     // RomVersion
                     .Copied(64, "Dendor")     // RomReleaseDate
                     .Copied(80, "Vendor")     // RomVendor
                     .Copied(112, "Sboard")    // SerialNo
                     .Copied(160, "Mboard"));  // Manufacturer; no AssetTag, no RevisionLevel
}

TEST_F(GetInfoBoardTest, LongTextsAreCutToTheirFields) {
    const std::string text = "0123456789abcdefghijklmnopqrstuvwxyz";
    AddBios(text);
    AddBoard(text);
    Place();
    ExpectRecord(kBoard, RecordImage(kBoardSize),
                 RecordImage(kBoardSize)
                     .Copied(0, ("P" + text).substr(0, 31))
                     .Copied(32, ("R" + text).substr(0, 31))
                     .Copied(64, ("D" + text).substr(0, 15))
                     .Copied(80, ("V" + text).substr(0, 31))
                     .Copied(112, ("S" + text).substr(0, 15))
                     .Copied(160, ("M" + text).substr(0, 31)));
}

TEST_F(GetInfoBoardTest, ZeroFilledRecordHoldsTerminatedTexts) {
    AddBios("endor");
    AddBoard("0123456789abcdefghijklmnopqrstuvwxyz");
    Place();
    BaseBoardInformation record{};
    EXPECT_EQ(GetInfo(kBoard, &record), 0);
    ExpectTexts({
        {"ProductName", record.ProductName, "P0123456789abcdefghijklmnopqrst"},
        {"RomVersion", record.RomVersion, "Rendor"},
        {"RomReleaseDate", record.RomReleaseDate, "Dendor"},
        {"RomVendor", record.RomVendor, "Vendor"},
        {"SerialNo", record.SerialNo, "S0123456789abcd"},
        {"AssetTag", record.AssetTag, ""},
        {"Manufacturer", record.Manufacturer, "M0123456789abcdefghijklmnopqrst"},
        {"RevisionLevel", record.RevisionLevel, ""},
    });
}

TEST_F(GetInfoBoardTest, MissingBoardLeavesItsFieldsAlone) {
    AddBios("endor");
    Place();
    ExpectRecord(
        kBoard, RecordImage(kBoardSize),
        RecordImage(kBoardSize).Copied(32, "Rendor").Copied(64, "Dendor").Copied(80, "Vendor"));
}

TEST_F(GetInfoBoardTest, SystemTextsAreFilled) {
    AddSystem("system");
    Place();
    ExpectRecord(kSystem, RecordImage(kSystemSize),
                 RecordImage(kSystemSize)
                     .Copied(0, "Psystem")     // SysProductName
                     .Copied(32, "Msystem")    // manufacturer
                     .Copied(64, "Vsystem"));  // version
}

TEST_F(GetInfoBoardTest, LongSystemTextsAreCutToTheirFields) {
    const std::string text = "0123456789abcdefghijklmnopqrstuvwxyz";
    AddSystem(text);
    Place();
    ExpectRecord(kSystem, RecordImage(kSystemSize),
                 RecordImage(kSystemSize)
                     .Copied(0, ("P" + text).substr(0, 31))
                     .Copied(32, ("M" + text).substr(0, 31))
                     .Copied(64, ("V" + text).substr(0, 15)));
}

TEST_F(GetInfoBoardTest, MissingSystemStructureIsASuccessThatWritesNothing) {
    table.Add(3, 1, 13);
    Place();
    ExpectRecord(kSystem, RecordImage(kSystemSize), RecordImage(kSystemSize));
}

TEST_F(GetInfoBoardTest, LegacyDmiTableIsAnsweredFromToo) {
    AddBios("endor");
    AddSystem("system");
    sim::SmbiosPlacement placement;
    placement.anchor = sim::SmbiosPlacement::Anchor::kDmi;
    Place(placement);
    ExpectRecord(
        kBoard, RecordImage(kBoardSize),
        RecordImage(kBoardSize).Copied(32, "Rendor").Copied(64, "Dendor").Copied(80, "Vendor"));
}

}  // namespace
