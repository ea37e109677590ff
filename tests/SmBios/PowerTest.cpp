// SPDX-License-Identifier: MIT
//
// Power supplies: which pass a type mask, and the texts of the n-th that does.
#include "support/SmBiosTest.h"

namespace {

class PowerTest : public SmBiosTest {
protected:
    // A supply of a type (0 to 15, bits 10 to 13) and a state (bits 0 to 2).
    sim::SmbiosStructure& AddSupply(int type, int state = 2, int group = 0) {
        return table.Add(39, handle++, 22)
            .Byte(4, static_cast<std::uint8_t>(group))
            .Word(14, static_cast<std::uint16_t>(type << 10 | state));
    }

    static bool Passes(int type, int mask) { return ((type & 0x0E) | mask) == mask; }

    std::uint16_t handle = 0x2700;
};

TEST_F(PowerTest, SupplyPassesWhenItsTypeBitsAreASubsetOfTheMask) {
    for (int type = 0; type < 16; ++type) {
        NewTable();
        AddSupply(type);
        Open();
        for (int mask = 0; mask < 32; ++mask)
            EXPECT_EQ(reader->GetPSQuantity(mask), Passes(type, mask) ? 1 : 0)
                << "type " << type << ", mask " << mask;
    }
}

TEST_F(PowerTest, Mask0ECountsEverySupplyAndMask0OnlyThoseWithBits11To13Clear) {
    for (int type = 0; type < 16; ++type) AddSupply(type);
    Open();
    EXPECT_EQ(reader->GetPSQuantity(0x0E), 16);
    EXPECT_EQ(reader->GetPSQuantity(0), 2);  // types 0 and 1: bit 10 is ignored
    EXPECT_EQ(reader->GetPSQuantity(15), 16);
    EXPECT_EQ(reader->GetPSQuantity(SmBios::PS_UPS), 8);
}

TEST_F(PowerTest, OtherCharacteristicsDoNotChangeTheType) {
    table.Add(39, 1, 22).Word(14, 0xC3FF);
    table.Add(39, 2, 22).Word(14, 0xFFFF);
    Open();
    EXPECT_EQ(reader->GetPSQuantity(0), 1);
    EXPECT_EQ(reader->GetPSQuantity(0x0C), 1);
    EXPECT_EQ(reader->GetPSQuantity(0x0E), 2);
}

TEST_F(PowerTest, QuantityLooksAtThirtyTwoSupplies) {
    for (int i = 0; i < 31; ++i) AddSupply(8);
    AddSupply(2);
    AddSupply(2);
    Open();
    EXPECT_EQ(reader->GetPSQuantity(0x0E), 32);
    EXPECT_EQ(reader->GetPSQuantity(2), 1);
}

TEST_F(PowerTest, RedundantSuppliesHaveAPowerUnitGroup) {
    AddSupply(2, 2, 0);
    AddSupply(2, 2, 1);
    AddSupply(6, 2, 255);
    Open();
    EXPECT_EQ(reader->GetPSRedundantQuantity(), 2);
}

TEST_F(PowerTest, RedundantQuantityLooksAtThirtyOneSupplies) {
    for (int i = 0; i < 40; ++i) AddSupply(2, 2, 1);
    Open();
    EXPECT_EQ(reader->GetPSRedundantQuantity(), 31);
    NewTable();
    for (int i = 0; i < 31; ++i) AddSupply(2, 2, 0);
    AddSupply(2, 2, 1);
    Open();
    EXPECT_EQ(reader->GetPSRedundantQuantity(), 0);
}

TEST_F(PowerTest, WithoutSuppliesTheQuantitiesAreZero) {
    Open();
    EXPECT_EQ(reader->GetPSQuantity(15), 0);
    EXPECT_EQ(reader->GetPSRedundantQuantity(), 0);
}

TEST_F(PowerTest, TextsAreThoseOfTheNthPassingSupply) {
    AddSupply(2).String(6, "dev1").String(7, "man1").String(8, "ser1");
    AddSupply(8).String(6, "dev2").String(7, "man2").String(8, "ser2");
    AddSupply(3).String(6, "dev3").String(7, "man3").String(8, "ser3");
    Open();
    const std::vector<std::vector<std::string>> passing = {{}, {"1", "3"}, {"1", "2", "3"}, {"2"}};
    const int masks[] = {0, 2, 0x0E, 8};
    for (int i = 0; i < 4; ++i) {
        const std::vector<std::string>& supplies = passing[static_cast<std::size_t>(i)];
        for (int n = 0; n < 5; ++n) {
            const bool found = n >= 1 && n <= static_cast<int>(supplies.size());
            const std::string name = found ? supplies[static_cast<std::size_t>(n - 1)] : "";
            EXPECT_EQ(AskNth(&SmBios::GetPSDeviceName, masks[i], n, 32),
                      found ? Copied("dev" + name) : Missing());
            EXPECT_EQ(AskNth(&SmBios::GetPSManufacturer, masks[i], n, 32),
                      found ? Copied("man" + name) : Missing());
            EXPECT_EQ(AskNth(&SmBios::GetPSSerialNo, masks[i], n, 32),
                      found ? Copied("ser" + name) : Missing());
            EXPECT_EQ(AskNth(&SmBios::GetPSStatus, masks[i], n),
                      found ? Terminated("present") : Missing());
        }
    }
}

TEST_F(PowerTest, TextsAreBoundedCopies) {
    AddSupply(2).String(6, "0123456789").String(7, "abcdefghij").String(8, "ABCDEFGHIJ");
    Open();
    EXPECT_EQ(AskNth(&SmBios::GetPSDeviceName, 15, 1, 5), Copied("0123"));
    EXPECT_EQ(AskNth(&SmBios::GetPSManufacturer, 15, 1, 11), Copied("abcdefghij"));
    EXPECT_EQ(AskNth(&SmBios::GetPSSerialNo, 15, 1, 10), Copied("ABCDEFGHI"));
}

TEST_F(PowerTest, MissingTextsAnswerMinusOne) {
    AddSupply(2);
    Open();
    EXPECT_EQ(AskNth(&SmBios::GetPSDeviceName, 15, 1, 32), Missing());
    EXPECT_EQ(AskNth(&SmBios::GetPSManufacturer, 15, 1, 32), Missing());
    EXPECT_EQ(AskNth(&SmBios::GetPSSerialNo, 15, 1, 32), Missing());
}

TEST_F(PowerTest, TextsAreReadFromThirtyOneSupplies) {
    for (int i = 1; i <= 32; ++i)
        AddSupply(2).String(6, "d" + std::to_string(i)).String(7, "m").String(8, "s");
    Open();
    EXPECT_EQ(AskNth(&SmBios::GetPSDeviceName, 15, 31, 32), Copied("d31"));
    EXPECT_EQ(AskNth(&SmBios::GetPSStatus, 15, 31), Terminated("present"));
    EXPECT_EQ(AskNth(&SmBios::GetPSDeviceName, 15, 32, 32), Missing());
    EXPECT_EQ(AskNth(&SmBios::GetPSManufacturer, 15, 32, 32), Missing());
    EXPECT_EQ(AskNth(&SmBios::GetPSSerialNo, 15, 32, 32), Missing());
    EXPECT_EQ(AskNth(&SmBios::GetPSStatus, 15, 32), Missing());
}

TEST_F(PowerTest, EveryStateHasItsText) {
    const std::vector<std::string> states = {
        "Other", "hot replaceable", "present", "Other", "unplugged from the wall",
        "Other", "Other",           "Other"};
    for (int state = 0; state < 8; ++state) {
        for (const int others : {0, 0x0378, 0xC000}) {
            NewTable();
            table.Add(39, 1, 22).Word(14, static_cast<std::uint16_t>(state | others));
            Open();
            EXPECT_EQ(AskNth(&SmBios::GetPSStatus, 15, 1),
                      Terminated(states[static_cast<std::size_t>(state)]));
        }
    }
}

TEST_F(PowerTest, ShortStructureHasNoCharacteristics) {
    table.Add(39, 1, 9).String(6, "dev").String("\xFF\xFF\xFF\xFF\xFF\xFF");
    Open();
    EXPECT_EQ(reader->GetPSQuantity(0), 1);
    EXPECT_EQ(AskNth(&SmBios::GetPSStatus, 0, 1), Terminated("Other"));
    EXPECT_EQ(AskNth(&SmBios::GetPSDeviceName, 0, 1, 32), Copied("dev"));
}

TEST_F(PowerTest, BiosEnableIsAlwaysMinusOne) {
    Open();
    EXPECT_EQ(reader->GetPSBiosEnable(), -1);
    AddSupply(2);
    Open();
    EXPECT_EQ(reader->GetPSBiosEnable(), -1);
}

}  // namespace
