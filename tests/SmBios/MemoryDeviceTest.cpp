// SPDX-License-Identifier: MIT
//
// Memory devices: the texts and the size of each.
#include "support/CodeTexts.h"
#include "support/MemoryTest.h"

namespace {

class MemoryDeviceTest : public MemoryTest {
protected:
    int SizeNumber(int dev) { return reader->GetMemDevSize(dev); }
};

TEST_F(MemoryDeviceTest, SizeTextTellsKilobytesFromMegabytes) {
    const std::vector<std::pair<int, Answer>> sizes = {
        {0x0000, {1, std::string("No Mem Device") + '\0'}},
        {0x0001, Terminated("1 MB")},
        {0x0200, Terminated("512 MB")},
        {0x7FFF, Terminated("32767 MB")},
        {0x8000, NothingWritten()},
        {0x8001, Terminated("1 KB")},
        {0x8200, Terminated("512 KB")},
        {0xFFFE, Terminated("32766 KB")},
    };
    for (const auto& [size, answer] : sizes) {
        NewTable();
        AddDevice(size, "A", "B");
        Open();
        EXPECT_EQ(Ask(&SmBios::GetMemDevSize, 1), answer) << size;
    }
}

TEST_F(MemoryDeviceTest, UnknownSizeIsOverwrittenWith32767Kb) {
    AddDevice(0xFFFF, "A", "B");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemDevSize, 1), Terminated("32767 KB"));
}

TEST_F(MemoryDeviceTest, SizeNumberIsInMegabytesWithBit15ShiftedAlong) {
    const std::vector<std::pair<int, int>> sizes = {
        {0x0000, 0},  {0x0001, 1},  {0x0200, 512}, {0x7FFF, 0x7FFF}, {0x8000, 0},
        {0x8001, 32}, {0x8200, 32}, {0x8400, 33},  {0xFFFE, 63},     {0xFFFF, 0},
    };
    for (const auto& [size, number] : sizes) {
        NewTable();
        AddDevice(size, "A", "B");
        Open();
        EXPECT_EQ(SizeNumber(1), number) << size;
    }
}

TEST_F(MemoryDeviceTest, DeviceSize8200Gives512KbAsTextAnd32AsNumber) {
    AddDevice(0x8200, "A", "B");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemDevSize, 1), Terminated("512 KB"));
    EXPECT_EQ(SizeNumber(1), 32);
}

TEST_F(MemoryDeviceTest, EveryTypeCodeHasItsName) {
    const CodeTexts types{{{1, "Other"},
                           {3, "DRAM"},
                           {4, "EDRAM"},
                           {5, "VRAM"},
                           {6, "SRAM"},
                           {7, "RAM"},
                           {8, "ROM"},
                           {9, "FLASH"},
                           {10, "EEPROM"},
                           {11, "FEPROM"},
                           {12, "EPROM"},
                           {13, "CDRAM"},
                           {14, "3DRAM"},
                           {15, "SDRAM"},
                           {16, "SGRAM"},
                           {17, "RDRAM"},
                           {18, "DDR"}},
                          "Unknown"};
    for (int code = 0; code < 256; ++code) {
        NewTable();
        AddDevice(256, "A", "B", code);
        Open();
        EXPECT_EQ(Ask(&SmBios::GetMemDevType, 1), Terminated(types.Of(code))) << code;
    }
}

const std::vector<std::string> kDetailBits = {"",
                                              "other",
                                              "Unknown",
                                              "Fast-paged",
                                              "Static column",
                                              "Pseudo-static",
                                              "RAMBUS",
                                              "Synchronous",
                                              "CMOS",
                                              "EDO",
                                              "Window DRAM",
                                              "Cache DRAM",
                                              "Non-volatile",
                                              "",
                                              "",
                                              ""};

TEST_F(MemoryDeviceTest, TypeDetailJoinsTheNamesOfTheSetBits) {
    for (unsigned low = 0; low < 16; ++low) {
        for (unsigned high = low; high < 16; ++high) {
            NewTable();
            const unsigned bits = 1u << low | 1u << high;
            AddDevice(256, "A", "B").Word(19, static_cast<std::uint16_t>(bits));
            Open();
            std::string text = kDetailBits[low];
            if (high != low) text += kDetailBits[high];
            const Answer answer = Ask(&SmBios::GetMemDevTypeDetail, 1, Buffer::kZeroed);
            EXPECT_EQ(answer, Copied(text)) << bits;
        }
    }
}

TEST_F(MemoryDeviceTest, TypeDetailWithoutBitsIsEmpty) {
    AddDevice(256, "A", "B").Word(19, 0);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemDevTypeDetail, 1, Buffer::kZeroed), NothingWritten());
}

TEST_F(MemoryDeviceTest, DetailBits0180GiveSynchronousCmos) {
    AddDevice(256, "A", "B").Word(19, 0x0080 | 0x0100);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemDevTypeDetail, 1, Buffer::kEmptyText),
              Terminated("SynchronousCMOS"));
}

TEST_F(MemoryDeviceTest, TypeDetailAppends) {
    AddDevice(256, "A", "B").Word(19, 0x0080);
    Open();
    char text[32] = "DDR ";
    EXPECT_EQ(reader->GetMemDevTypeDetail(1, text), 0);
    EXPECT_STREQ(text, "DDR Synchronous");
}

TEST_F(MemoryDeviceTest, SpeedBelowOneAnswersMinusOne) {
    AddDevice(256, "A", "B").Word(21, 0);
    AddDevice(256, "A", "B").Word(21, 1);
    AddDevice(256, "A", "B").Word(21, 333);
    AddDevice(256, "A", "B").Word(21, 0xFFFF);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemDevSpeed, 1), Missing());
    EXPECT_EQ(Ask(&SmBios::GetMemDevSpeed, 2), Terminated("1 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetMemDevSpeed, 3), Terminated("333 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetMemDevSpeed, 4), Terminated("65535 MHZ"));
}

TEST_F(MemoryDeviceTest, ManufacturerIsABoundedCopy) {
    AddDevice(256, "A", "B").String(23, "0123456789");
    AddDevice(256, "A", "B");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemDevManufacturer, 1, 32), Copied("0123456789"));
    EXPECT_EQ(Ask(&SmBios::GetMemDevManufacturer, 1, 10), Copied("012345678"));
    EXPECT_EQ(Ask(&SmBios::GetMemDevManufacturer, 2, 32), Missing());
}

TEST_F(MemoryDeviceTest, LocatorIsStringOneWhenTheStringNumberIsOne) {
    AddDevice(256, "DIMM1A", "Bank 0");
    table.Add(17, 2, 27).String(17, "Bank 0").String(16, "DIMM1B");
    table.Add(17, 3, 27).String(17, "Bank 0");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemDevLocator, 1, 64), Copied("DIMM1A"));
    EXPECT_EQ(Ask(&SmBios::GetMemDevLocator, 1, 5), Copied("DIMM"));
    EXPECT_EQ(Ask(&SmBios::GetMemDevLocator, 2, 64), Missing());
    EXPECT_EQ(Ask(&SmBios::GetMemDevLocator, 3, 64), Missing());
}

TEST_F(MemoryDeviceTest, MissingDeviceAnswersMinusOne) {
    AddDevice(256, "A", "B").Word(19, 0x80).Word(21, 333).String(23, "M");
    Open();
    for (const int dev : {0, 2, 256}) {
        EXPECT_EQ(Ask(&SmBios::GetMemDevSize, dev), Missing());
        EXPECT_EQ(Ask(&SmBios::GetMemDevType, dev), Missing());
        EXPECT_EQ(Ask(&SmBios::GetMemDevTypeDetail, dev), Missing());
        EXPECT_EQ(Ask(&SmBios::GetMemDevSpeed, dev), Missing());
        EXPECT_EQ(Ask(&SmBios::GetMemDevManufacturer, dev, 32), Missing());
        EXPECT_EQ(Ask(&SmBios::GetMemDevLocator, dev, 64), Missing());
        EXPECT_EQ(SizeNumber(dev), 0);
    }
    EXPECT_EQ(SizeNumber(257), 256);
}

TEST_F(MemoryDeviceTest, ShortDeviceReadsAsZeroPastItsEnd) {
    table.Add(17, 1, 20).Word(12, 256).Byte(18, 15).Byte(19, 0x80).String("\xFF\xFF\xFF");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemDevType, 1), Terminated("SDRAM"));
    EXPECT_EQ(Ask(&SmBios::GetMemDevTypeDetail, 1, Buffer::kZeroed), Copied("Synchronous"));
    EXPECT_EQ(Ask(&SmBios::GetMemDevSpeed, 1), Missing());
    EXPECT_EQ(Ask(&SmBios::GetMemDevManufacturer, 1, 32), Missing());
}

}  // namespace
