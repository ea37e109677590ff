// SPDX-License-Identifier: MIT
//
// GetMemoryInformation: one bank entry per populated module or device.
#include "support/MemorySummaryTest.h"

#include <cstring>

#include "support/FieldTable.h"

namespace {

TEST_F(MemorySummaryTest, NullRecordAnswersMinusOne) {
    AddDevice(256, "DIMM1", "Bank");
    Open();
    EXPECT_EQ(reader->GetMemoryInformation(nullptr), -1);
}

TEST_F(MemorySummaryTest, ModulesAndDevicesBothAbsentGiveQuantityZeroAndMinusOne) {
    table.Add(0, 0, 20);
    EXPECT_EQ(Summarise(), -1);
    EXPECT_EQ(info.quantity, 0);
    EXPECT_EQ(info.TotalSize, 0);
    ExpectZeroFrom(0);
}

TEST_F(MemorySummaryTest, TotalIsStatedEvenWhenNothingDescribesTheBanks) {
    AddModule(1, 8);             // no controller lists it
    AddDevice(512, "A", "row");  // no name that says which socket
    EXPECT_EQ(Summarise(), -1);
    EXPECT_EQ(info.TotalSize, 256);
    EXPECT_EQ(info.quantity, 0);
    ExpectZeroFrom(0);
}

TEST_F(MemorySummaryTest, ModulePathFillsABankPerPopulatedModule) {
    AddController({1, 2, 3});
    AddModule(1, 8, 0x0480).Byte(6, 60).String(4, "SLOT1");
    AddModule(2, 125, 0x0100).String(4, "SLOT2");
    AddModule(3, 0x80 | 7, 0x0100).Byte(6, 0).String(4, "SLOT3");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 2);
    EXPECT_EQ(info.TotalSize, 256 + 128);
    ExpectTexts({
        {"bank[0].size", info.bank[0].size, "256 MB"},
        {"bank[0].speed", info.bank[0].speed, "60 ns"},
        {"bank[0].type", info.bank[0].type, " SDRAM"},
        {"bank[0].TypeDetail", info.bank[0].TypeDetail, ""},
        {"bank[0].manufacturer", info.bank[0].manufacturer, ""},
    });
    EXPECT_EQ(info.bank[0].SlotNumber, 1);
    ExpectTexts({
        {"bank[1].size", info.bank[1].size, "128 MB"},
        {"bank[1].speed", info.bank[1].speed, ""},
        {"bank[1].type", info.bank[1].type, "DIMM"},
    });
    EXPECT_EQ(info.bank[1].SlotNumber, 3);
    ExpectZeroFrom(2);
}

TEST_F(MemorySummaryTest, SizeBytes7DTo7FGiveNoBankEntry) {
    AddController({1, 2, 3});
    AddModule(1, 0x7D, 0x0100);
    AddModule(2, 0x7E, 0x0100);
    AddModule(3, 0x7F, 0x0100);
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 0);
    EXPECT_EQ(info.TotalSize, 0);
    ExpectZeroFrom(0);
}

TEST_F(MemorySummaryTest, ListedModuleThatDoesNotExistGivesNoBankEntry) {
    AddController({1, 9});
    AddModule(1, 8, 0x0100);
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 1);
    ExpectZeroFrom(1);
}

TEST_F(MemorySummaryTest, ModuleWithHandleZeroCountsInTheTotalAndGivesNoBankEntry) {
    AddController({1});
    AddModule(0, 9, 0x0100).String(4, "SLOT2");
    AddModule(1, 8, 0x0100).String(4, "SLOT1");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 1);
    EXPECT_EQ(info.TotalSize, 512 + 256);
    EXPECT_STREQ(info.bank[0].size, "256 MB");
    EXPECT_EQ(info.bank[0].SlotNumber, 1);
    ExpectZeroFrom(1);
}

TEST_F(MemorySummaryTest, HandlesAbove127LeaveTheModulePathWithoutBanks) {
    AddController({0x600});
    AddModule(0x600, 8, 0x0100);
    AddDevice(512, "DIMM1", "Bank");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 0);
    EXPECT_EQ(info.TotalSize, 256);
    ExpectZeroFrom(0);
}

TEST_F(MemorySummaryTest, ModuleTakesDetailAndManufacturerFromTheDeviceInItsSocket) {
    AddController({1, 2});
    AddModule(1, 8, 0x0100).String(4, "DIMM1");
    AddModule(2, 8, 0x0100).String(4, "DIMM2");
    AddDevice(0, "DIMM2", "Bank").Word(19, 0x0080).String(23, "Maker Two").Word(21, 333);
    AddDevice(0, "DIMM1", "Bank").Word(19, 0x0100).String(23, "Maker One").Word(21, 266);
    EXPECT_EQ(Summarise(), 0);
    EXPECT_STREQ(info.bank[0].TypeDetail, "CMOS");
    EXPECT_STREQ(info.bank[0].manufacturer, "Maker One");
    EXPECT_STREQ(info.bank[0].speed, "");
    EXPECT_STREQ(info.bank[1].TypeDetail, "Synchronous");
    EXPECT_STREQ(info.bank[1].manufacturer, "Maker Two");
}

TEST_F(MemorySummaryTest, ModuleLooksForItsDeviceOnlyWhenDevicesDescribeTheMemory) {
    AddController({1});
    AddModule(1, 8, 0x0100).String(4, "SOCKET1");
    AddDevice(256, "SOCKET1", "row").Word(19, 0x0080).String(23, "Maker");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_STREQ(info.bank[0].TypeDetail, "");
    EXPECT_STREQ(info.bank[0].manufacturer, "");
    AddDevice(0, "X", "Bank");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_STREQ(info.bank[0].TypeDetail, "Synchronous");
    EXPECT_STREQ(info.bank[0].manufacturer, "Maker");
}

TEST_F(MemorySummaryTest, ModulePathWinsOverTheDevicePath) {
    AddController({1});
    AddModule(1, 8, 0x0100).String(4, "SLOT7");
    AddDevice(512, "DIMM1", "Bank");
    AddDevice(512, "DIMM2", "Bank");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 1);
    EXPECT_STREQ(info.bank[0].size, "256 MB");
}

TEST_F(MemorySummaryTest, DevicePathIsTakenWhenTheControllerListsAnEmptySlot) {
    AddController({1, 0});
    AddModule(1, 8, 0x0100);
    AddDevice(512, "DIMM1", "Bank");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_STREQ(info.bank[0].size, "512 MB");
    EXPECT_EQ(info.TotalSize, 256);
}

TEST_F(MemorySummaryTest, DevicePathFillsABankPerPopulatedDevice) {
    AddDevice(512, "DIMM1A", "Bank 0").Word(19, 0x0180).Word(21, 266).String(23, "Maker");
    AddDevice(0, "DIMM1B", "Bank 0").Word(21, 333);
    AddDevice(0x8200, "DIMM2B", "Bank 1", 15);
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 2);
    EXPECT_EQ(info.TotalSize, 512 + 32);
    ExpectTexts({
        {"bank[0].size", info.bank[0].size, "512 MB"},
        {"bank[0].speed", info.bank[0].speed, "266 MHZ"},
        {"bank[0].type", info.bank[0].type, "DDR"},
        {"bank[0].TypeDetail", info.bank[0].TypeDetail, "SynchronousCMOS"},
        {"bank[0].manufacturer", info.bank[0].manufacturer, "Maker"},
    });
    EXPECT_EQ(info.bank[0].SlotNumber, 5);
    ExpectTexts({
        {"bank[1].size", info.bank[1].size, "512 KB"},
        {"bank[1].speed", info.bank[1].speed, ""},
        {"bank[1].type", info.bank[1].type, "SDRAM"},
        {"bank[1].TypeDetail", info.bank[1].TypeDetail, ""},
        {"bank[1].manufacturer", info.bank[1].manufacturer, ""},
    });
    EXPECT_EQ(info.bank[1].SlotNumber, 10);
    ExpectZeroFrom(2);
}

TEST_F(MemorySummaryTest, DeviceOfUnknownSizeHasABank) {
    AddDevice(0xFFFF, "DIMM1", "Bank");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 1);
    EXPECT_STREQ(info.bank[0].size, "32767 KB");
    EXPECT_EQ(info.TotalSize, 0);
}

TEST_F(MemorySummaryTest, DeviceOfNoKilobytesHasABankWithoutASize) {
    AddDevice(0x8000, "DIMM1", "Bank");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 1);
    EXPECT_STREQ(info.bank[0].size, "");
    EXPECT_STREQ(info.bank[0].type, "DDR");
}

TEST_F(MemorySummaryTest, BanksStopAtSixteenAndTheTotalGoesOn) {
    for (int i = 0; i < 20; ++i)
        AddDevice(100 + i, "DIMM1", "Bank").String(23, "M" + std::to_string(i));
    Open();
    struct {
        LocalMemInfo info;
        char guard[64];
    } box;
    std::memset(&box, 0xA5, sizeof box);
    EXPECT_EQ(reader->GetMemoryInformation(&box.info), 0);
    EXPECT_EQ(box.info.quantity, 16);
    EXPECT_EQ(box.info.TotalSize, 20 * 100 + 190);
    EXPECT_STREQ(box.info.bank[15].size, "115 MB");
    EXPECT_STREQ(box.info.bank[15].manufacturer, "M15");
    for (const char c : box.guard) EXPECT_EQ(c, kMark);
}

TEST_F(MemorySummaryTest, ModuleBanksStopAtSixteenToo) {
    std::vector<int> handles;
    for (int i = 1; i <= 20; ++i) handles.push_back(i);
    AddController(handles);
    for (const int handle : handles) AddModule(handle, 1, 0x0100);
    Open();
    struct {
        LocalMemInfo info;
        char guard[64];
    } box;
    std::memset(&box, 0xA5, sizeof box);
    EXPECT_EQ(reader->GetMemoryInformation(&box.info), 0);
    EXPECT_EQ(box.info.quantity, 16);
    EXPECT_EQ(box.info.TotalSize, 40);
    EXPECT_STREQ(box.info.bank[15].size, "2 MB");
    for (const char c : box.guard) EXPECT_EQ(c, kMark);
}

TEST_F(MemorySummaryTest, ManufacturerIsCutToItsField) {
    AddDevice(256, "A3", "Bank").String(23, "0123456789abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_STREQ(info.bank[0].manufacturer, "0123456789abcdefghijklmnopqrstu");
    EXPECT_EQ(info.bank[0].SlotNumber, 3);
}

TEST_F(MemorySummaryTest, TypeDetailIsCutToItsField) {
    AddDevice(256, "A3", "Bank").Word(19, 0xFFFF).String(23, "Maker");
    AddController({1});
    AddModule(1, 8, 0x0100).String(4, "A3");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_STREQ(info.bank[0].TypeDetail, "otherUnknownFast-pagedStatic co");
    EXPECT_STREQ(info.bank[0].manufacturer, "Maker");
    NewTable();
    AddDevice(256, "A3", "Bank").Word(19, 0xFFFF);
    EXPECT_EQ(Summarise(), 0);
    EXPECT_STREQ(info.bank[0].TypeDetail, "otherUnknownFast-pagedStatic co");
    EXPECT_STREQ(info.bank[0].manufacturer, "");
    EXPECT_EQ(info.bank[0].SlotNumber, 3);
}

TEST_F(MemorySummaryTest, LongestSizeTextFitsItsField) {
    AddController({1});
    AddModule(1, 124, 0x0100);
    EXPECT_EQ(Summarise(), 0);
    EXPECT_STREQ(info.bank[0].size, "-2147483648 MB");
    EXPECT_EQ(info.TotalSize, 0);
}

}  // namespace
