// SPDX-License-Identifier: MIT
//
// Whether memory devices describe the memory, and which of them sits in a socket.
#include "support/MemoryTest.h"

namespace {

class MemoryDeviceLookupTest : public MemoryTest {
protected:
    int Exist() {
        Open();
        return reader->ExistMemDev();
    }

    int Proper(const std::string& locator) {
        std::string text = locator;
        const int found = reader->GetProperMemDev(text.data());
        EXPECT_EQ(text, locator);
        return found;
    }
};

TEST_F(MemoryDeviceLookupTest, DevicesExistWhenABankLocatorSaysBank) {
    AddDevice(0, "X", "Bank 0");
    EXPECT_EQ(Exist(), 1);
}

TEST_F(MemoryDeviceLookupTest, UpperCaseBankNeedsASize) {
    for (const int size : {0x0001, 0x7FFF, 0x8001, 0xFFFF}) {
        NewTable();
        AddDevice(size, "X", "BANK0");
        EXPECT_EQ(Exist(), 1) << size;
    }
    for (const int size : {0x0000, 0x8000}) {
        NewTable();
        AddDevice(size, "X", "BANK0");
        EXPECT_EQ(Exist(), 0) << size;
    }
}

TEST_F(MemoryDeviceLookupTest, DevicesExistWhenADeviceLocatorSaysDimm) {
    for (const char* locator : {"Dimm 1", "DIMM1A", "J1 DIMM", "xDimmx"}) {
        NewTable();
        AddDevice(0, locator, "row");
        EXPECT_EQ(Exist(), 1) << locator;
    }
    for (const char* locator : {"dimm 1", "DImm", "SIMM", "DIM", "Bank", "BANK"}) {
        NewTable();
        AddDevice(256, locator, "row");
        EXPECT_EQ(Exist(), 0) << locator;
    }
}

TEST_F(MemoryDeviceLookupTest, BankLocatorIsSearchedForBankAlone) {
    for (const char* bank : {"bank", "DIMM", "Dimm", "BAnk", "Ban"}) {
        NewTable();
        AddDevice(256, "X", bank);
        EXPECT_EQ(Exist(), 0) << bank;
    }
    NewTable();
    AddDevice(256, "X", "the Bank");
    EXPECT_EQ(Exist(), 1);
}

TEST_F(MemoryDeviceLookupTest, LaterDevicesAreLookedAt) {
    AddDevice(256, "X", "row");
    AddDevice(0, "X", "BANK");
    AddDevice(0, "X", "Bank");
    EXPECT_EQ(Exist(), 1);
}

TEST_F(MemoryDeviceLookupTest, MissingBankLocatorEndsTheSearch) {
    table.Add(17, 1, 27).Word(12, 256).String(16, "DIMM");
    AddDevice(256, "DIMM", "Bank");
    EXPECT_EQ(Exist(), 0);
    NewTable();
    AddDevice(256, "X", "row");
    table.Add(17, 1, 27).Word(12, 256).String(16, "DIMM").Byte(17, 21);
    AddDevice(256, "DIMM", "Bank");
    EXPECT_EQ(Exist(), 0);
}

TEST_F(MemoryDeviceLookupTest, EmptyBankLocatorPastTheLastStringDoesNotEndTheSearch) {
    table.Add(17, 1, 27).Word(12, 256).String(16, "DIMM").Byte(17, 2);
    EXPECT_EQ(Exist(), 1);
}

TEST_F(MemoryDeviceLookupTest, MissingDeviceLocatorDoesNotEndTheSearch) {
    table.Add(17, 1, 27).Word(12, 256).String(17, "row");
    EXPECT_EQ(Exist(), 0);
    AddDevice(256, "DIMM", "row");
    EXPECT_EQ(Exist(), 1);
}

TEST_F(MemoryDeviceLookupTest, WithoutDevicesNoneExist) {
    table.Add(6, 1, 12).String(4, "DIMM Bank");
    EXPECT_EQ(Exist(), 0);
}

TEST_F(MemoryDeviceLookupTest, ProperDeviceIsTheFirstWithTheLocator) {
    AddDevice(256, "DIMM1", "Bank");
    AddDevice(256, "DIMM2 ", "Bank");
    AddDevice(256, "DIMM3", "Bank");
    AddDevice(256, "DIMM3", "Bank");
    Open();
    EXPECT_EQ(Proper("DIMM1"), 1);
    EXPECT_EQ(Proper("DIMM2 "), 2);
    EXPECT_EQ(Proper("DIMM3"), 3);
    EXPECT_EQ(Proper("DIMM2"), 0);
    EXPECT_EQ(Proper("DIMM"), 0);
    EXPECT_EQ(Proper("dimm1"), 0);
    EXPECT_EQ(Proper(""), 0);
    EXPECT_EQ(reader->GetProperMemDev(nullptr), 0);
}

TEST_F(MemoryDeviceLookupTest, DeviceWhoseLocatorIsNotItsFirstStringEndsTheSearch) {
    AddDevice(256, "DIMM1", "Bank");
    table.Add(17, 2, 27).String(17, "Bank").String(16, "DIMM2");
    AddDevice(256, "DIMM3", "Bank");
    Open();
    EXPECT_EQ(Proper("DIMM1"), 1);
    EXPECT_EQ(Proper("DIMM2"), 0);
    EXPECT_EQ(Proper("DIMM3"), 0);
}

TEST_F(MemoryDeviceLookupTest, ProperDeviceEndsAfterTwoHundredFiftyFive) {
    for (int i = 1; i <= 256; ++i) AddDevice(256, "D" + std::to_string(i), "B");
    Open();
    EXPECT_EQ(Proper("D255"), 255);
    EXPECT_EQ(Proper("D256"), 0);
}

}  // namespace
