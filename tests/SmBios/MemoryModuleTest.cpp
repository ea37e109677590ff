// SPDX-License-Identifier: MIT
//
// Memory controller and memory modules: the slot list and the texts of each module.
#include "support/MemoryTest.h"

namespace {

class MemoryModuleTest : public MemoryTest {};

TEST_F(MemoryModuleTest, ControllerExistsWhenThereIsAStructureOfItsType) {
    table.Add(0, 0, 20);
    Open();
    EXPECT_EQ(reader->ExistMemCtl(), 0);
    AddController({});
    Open();
    EXPECT_EQ(reader->ExistMemCtl(), 1);
}

TEST_F(MemoryModuleTest, ModulesExistWhenAControllerListsThem) {
    Open();
    EXPECT_EQ(reader->ExistMemModule(), 0);  // no controller
    AddModule(1, 8);
    Open();
    EXPECT_EQ(reader->ExistMemModule(), 0);  // still none
    AddController({1});
    Open();
    EXPECT_EQ(reader->ExistMemModule(), 1);
}

TEST_F(MemoryModuleTest, ControllerWithoutSlotsHasNoModules) {
    AddController({});
    Open();
    EXPECT_EQ(reader->ExistMemModule(), 0);
    EXPECT_EQ(reader->GetMemModuleQuantity(), 0);
    EXPECT_EQ(reader->GetValidMemModuleHandle(0), 0);
}

TEST_F(MemoryModuleTest, AnySlotHandleOfZeroMeansNoModules) {
    const std::vector<std::vector<int>> lists = {{0}, {0, 2, 3}, {1, 0, 3}, {1, 2, 0}};
    for (const std::vector<int>& modules : lists) {
        NewTable();
        AddController(modules);
        Open();
        EXPECT_EQ(reader->ExistMemModule(), 0);
    }
}

TEST_F(MemoryModuleTest, ModuleHandlesNeedNotNameAModule) {
    AddController({0x700, 0xFFFF});
    Open();
    EXPECT_EQ(reader->ExistMemModule(), 1);
}

TEST_F(MemoryModuleTest, FirstControllerCounts) {
    AddController({5});
    AddController({0});
    Open();
    EXPECT_EQ(reader->ExistMemModule(), 1);
    EXPECT_EQ(reader->GetValidMemModuleHandle(0), 5);
}

TEST_F(MemoryModuleTest, ValidHandlesLieInOneTo127) {
    AddController({1, 127, 128, 0, 0x101, 0xFFFF, 64});
    Open();
    EXPECT_EQ(reader->GetValidMemModuleHandle(0), 1);
    EXPECT_EQ(reader->GetValidMemModuleHandle(1), 127);
    EXPECT_EQ(reader->GetValidMemModuleHandle(2), 0);
    EXPECT_EQ(reader->GetValidMemModuleHandle(3), 0);
    EXPECT_EQ(reader->GetValidMemModuleHandle(4), 0);
    EXPECT_EQ(reader->GetValidMemModuleHandle(5), 0);
    EXPECT_EQ(reader->GetValidMemModuleHandle(-1), 0);
    EXPECT_EQ(reader->GetValidMemModuleHandle(6), 64);
    EXPECT_EQ(reader->GetValidMemModuleHandle(7), 0);
    EXPECT_EQ(reader->GetValidMemModuleHandle(1000), 0);
}

TEST_F(MemoryModuleTest, SlotsAfterTheCountAreNotRead) {
    AddController({1, 2, 3}).Byte(14, 2);
    Open();
    EXPECT_EQ(reader->GetValidMemModuleHandle(1), 2);
    EXPECT_EQ(reader->GetValidMemModuleHandle(2), 0);
    EXPECT_EQ(reader->GetMemModuleQuantity(), 2);
}

TEST_F(MemoryModuleTest, SlotsPastTheStructureReadAsZero) {
    table.Add(5, 0x500, 17).Byte(14, 3).Word(15, 9).String("\x05\x05\x05\x05");
    Open();
    EXPECT_EQ(reader->GetValidMemModuleHandle(0), 9);
    EXPECT_EQ(reader->GetValidMemModuleHandle(1), 0);
    EXPECT_EQ(reader->GetMemModuleQuantity(), 1);
    EXPECT_EQ(reader->ExistMemModule(), 0);
}

TEST_F(MemoryModuleTest, ControllerTooShortForItsCountHasNoSlots) {
    table.Add(5, 0x500, 14).String("\x05\x05\x05\x05");
    Open();
    EXPECT_EQ(reader->ExistMemCtl(), 1);
    EXPECT_EQ(reader->ExistMemModule(), 0);
    EXPECT_EQ(reader->GetMemModuleQuantity(), 0);
}

TEST_F(MemoryModuleTest, QuantityEndsAtTheFirstInvalidHandle) {
    AddController({1, 2, 200, 4});
    Open();
    EXPECT_EQ(reader->GetMemModuleQuantity(), 2);
    NewTable();
    Open();
    EXPECT_EQ(reader->GetMemModuleQuantity(), 0);
}

TEST_F(MemoryModuleTest, QuantityIsNotBoundedByTheBanks) {
    AddController(std::vector<int>(100, 7));
    Open();
    EXPECT_EQ(reader->GetMemModuleQuantity(), 100);
}

TEST_F(MemoryModuleTest, EveryInstalledSizeHasItsText) {
    for (int size = 0; size < 256; ++size) {
        NewTable();
        AddModule(1, size);
        Open();
        const int n = size & 0x7F;
        Answer expected = NothingWritten();
        if (n < 31) expected = Terminated(std::to_string(1LL << n) + " MB");
        if (n >= 31 && n < 125) expected = Terminated("-2147483648 MB");
        EXPECT_EQ(Ask(&SmBios::GetMemModuleSize, 1), expected) << size;
    }
}

TEST_F(MemoryModuleTest, SizeByte88Gives256Mb) {
    AddModule(1, 0x88);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemModuleSize, 1), Terminated("256 MB"));
}

TEST_F(MemoryModuleTest, SpeedIsWrittenAndZeroAnswersMinusOne) {
    for (int speed = 0; speed < 256; ++speed) {
        NewTable();
        AddModule(1, 8).Byte(6, static_cast<std::uint8_t>(speed));
        Open();
        EXPECT_EQ(Ask(&SmBios::GetMemModuleSpeed, 1),
                  speed == 0 ? Missing() : Terminated(std::to_string(speed) + " ns"));
    }
}

const std::vector<std::string> kTypeBits = {"other", "Unknown",    "Standard", "Fast Page Mode",
                                            "EDO",   "Parity",     "ECC",      "SIMM",
                                            "DIMM",  " Burst EDO", " SDRAM"};

TEST_F(MemoryModuleTest, HighestTypeBitDecides) {
    for (std::size_t low = 0; low < 16; ++low) {
        for (std::size_t high = low; high < 16; ++high) {
            NewTable();
            AddModule(1, 8, 1 << low | 1 << high);
            Open();
            Answer expected = NothingWritten();
            if (low < kTypeBits.size()) expected = Terminated(kTypeBits[low]);
            if (high < kTypeBits.size()) expected = Terminated(kTypeBits[high]);
            Answer answer = Ask(&SmBios::GetMemModuleType, 1);
            // After the terminator bytes of a longer text overwritten before may remain.
            if (answer.written.size() > expected.written.size())
                answer.written.resize(expected.written.size());
            EXPECT_EQ(answer, expected) << low << " and " << high;
        }
    }
}

TEST_F(MemoryModuleTest, WithoutTypeBitsNothingIsWritten) {
    AddModule(1, 8, 0);
    AddModule(2, 8, 0xF800);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemModuleType, 1), NothingWritten());
    EXPECT_EQ(Ask(&SmBios::GetMemModuleType, 2), NothingWritten());
}

TEST_F(MemoryModuleTest, AllTypeBitsGiveTheHighest) {
    AddModule(1, 8, 0xFFFF);
    Open();
    const Answer answer = Ask(&SmBios::GetMemModuleType, 1, Buffer::kZeroed);
    EXPECT_EQ(answer.result, 0);
    EXPECT_STREQ(answer.written.c_str(), " SDRAM");
}

TEST_F(MemoryModuleTest, TypeBitsOfSimmAndSdramGiveSdramWithItsBlank) {
    AddModule(1, 8, 0x0480);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemModuleType, 1), Terminated(" SDRAM"));
}

TEST_F(MemoryModuleTest, BankConnectorIsTheRawByte) {
    for (const int connections : {0x00, 0x01, 0x1F, 0x80, 0xFF}) {
        NewTable();
        AddModule(1, 8).Byte(5, static_cast<std::uint8_t>(connections));
        Open();
        EXPECT_EQ(reader->GetMemBankConnector(1), connections);
    }
}

TEST_F(MemoryModuleTest, LocatorIsStringOneWhenTheStringNumberIsOne) {
    AddModule(1, 8).String(4, "SLOT 12345");
    AddModule(2, 8).String("first").String(4, "second");
    AddModule(3, 8).String("unused");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemModuleLocate, 1, 64), Copied("SLOT 12345"));
    EXPECT_EQ(Ask(&SmBios::GetMemModuleLocate, 1, 5), Copied("SLOT"));
    EXPECT_EQ(Ask(&SmBios::GetMemModuleLocate, 2, 64), Missing());
    EXPECT_EQ(Ask(&SmBios::GetMemModuleLocate, 3, 64), Missing());
}

TEST_F(MemoryModuleTest, ModulesAreFoundByHandle) {
    AddModule(0x11, 4).Byte(6, 60);
    AddModule(0x10, 5).Byte(6, 70);
    AddModule(0x10, 6).Byte(6, 80);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemModuleSize, 0x10), Terminated("32 MB"));
    EXPECT_EQ(Ask(&SmBios::GetMemModuleSpeed, 0x10), Terminated("70 ns"));
    EXPECT_EQ(Ask(&SmBios::GetMemModuleSize, 0x11), Terminated("16 MB"));
}

TEST_F(MemoryModuleTest, UnknownHandleAnswersMinusOne) {
    AddModule(1, 8, 0x100).String(4, "SLOT").Byte(6, 10);
    AddDevice(256, "A", "B");
    Open();
    for (const int handle : {2, 0x1100, -1}) {
        EXPECT_EQ(Ask(&SmBios::GetMemModuleSize, handle), Missing());
        EXPECT_EQ(Ask(&SmBios::GetMemModuleSpeed, handle), Missing());
        EXPECT_EQ(Ask(&SmBios::GetMemModuleType, handle), Missing());
        EXPECT_EQ(Ask(&SmBios::GetMemModuleLocate, handle, 64), Missing());
        EXPECT_EQ(reader->GetMemBankConnector(handle), -1);
    }
}

TEST_F(MemoryModuleTest, HandleZeroAnswersMinusOneAtOnce) {
    AddModule(0, 8, 0x100).String(4, "SLOT").Byte(6, 10);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemModuleSize, 0), Missing());
    EXPECT_EQ(Ask(&SmBios::GetMemModuleSpeed, 0), Missing());
    EXPECT_EQ(Ask(&SmBios::GetMemModuleType, 0), Missing());
    EXPECT_EQ(Ask(&SmBios::GetMemModuleLocate, 0, 64), Missing());
    EXPECT_EQ(reader->GetMemBankConnector(0), -1);
}

TEST_F(MemoryModuleTest, WalkEndsAfterTwoHundredFiftyFiveModules) {
    for (int i = 1; i <= 256; ++i) AddModule(i, 3);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetMemModuleSize, 255), Terminated("8 MB"));
    EXPECT_EQ(Ask(&SmBios::GetMemModuleSize, 256), Missing());
}

}  // namespace
