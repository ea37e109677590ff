// SPDX-License-Identifier: MIT
//
// GetInfo for the power supplies (0x800000) and those of the UPS type (0x1000000).
#include "support/InterfaceTest.h"

namespace {

constexpr unsigned long kPower = 0x800000;
constexpr unsigned long kUps = 0x1000000;
constexpr std::size_t kSuppliesSize = 1224;

class GetInfoPowerTest : public InterfaceTest {
protected:
    sim::SmbiosStructure& AddSupply(int type, int state, int group, const std::string& text) {
        return table.Add(39, handle++, 22)
            .Byte(4, static_cast<std::uint8_t>(group))
            .Word(14, static_cast<std::uint16_t>(type << 10 | state))
            .String(6, "D" + text)
            .String(7, "M" + text)
            .String(8, "S" + text);
    }

    static void Supply(RecordImage& record, std::size_t i, const std::string& text,
                       const std::string& status) {
        const std::size_t at = 8 + 152 * i;
        record
            .Copied(at + 64, "D" + text)   // DeviceName
            .Copied(at, "M" + text)        // manufacturer
            .Copied(at + 112, "S" + text)  // SerialNo
            .Text(at + 128, status);       // no ProductName, ProductVersion, BiosEnable
    }

    std::uint16_t handle = 0x2700;
};

TEST_F(GetInfoPowerTest, EverySupplyIsFilled) {
    AddSupply(4, 2, 1, "one");
    AddSupply(9, 1, 0, "two");
    AddSupply(15, 7, 255, "three");
    Place();
    RecordImage expected(kSuppliesSize);
    expected.Number(0, 3).Number(4, 2);
    Supply(expected, 0, "one", "present");
    Supply(expected, 1, "two", "hot replaceable");
    Supply(expected, 2, "three", "Other");
    ExpectRecord(kPower, RecordImage(kSuppliesSize), expected);
}

TEST_F(GetInfoPowerTest, UpsSuppliesAreThoseOfItsTypeBitsAndTheRedundantNumberIsLeftAlone) {
    const char* const names[] = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
    for (int type = 0; type < 10; ++type) AddSupply(type, 2, 1, names[type]);
    Place();
    RecordImage expected(kSuppliesSize);
    expected.Number(0, 8);
    for (std::size_t i = 0; i < 8; ++i) Supply(expected, i, names[i], "present");
    ExpectRecord(kUps, RecordImage(kSuppliesSize), expected);
}

TEST_F(GetInfoPowerTest, UpsSuppliesAreCountedAmongThemselves) {
    AddSupply(8, 2, 0, "switching");
    AddSupply(6, 2, 0, "ups");
    Place();
    RecordImage expected(kSuppliesSize);
    expected.Number(0, 1);
    Supply(expected, 0, "ups", "present");
    ExpectRecord(kUps, RecordImage(kSuppliesSize), expected);
}

TEST_F(GetInfoPowerTest, LongestStatusFillsTheFieldAfterIt) {
    AddSupply(4, 4, 0, "x");
    Place();
    RecordImage expected(kSuppliesSize);
    expected.Number(0, 1).Number(4, 0);
    Supply(expected, 0, "x", "unplugged from the wall");
    ExpectRecord(kPower, RecordImage(kSuppliesSize), expected);
    SystemPowerInformation record{};
    EXPECT_EQ(GetInfo(kPower, &record), 0);
    EXPECT_STREQ(record.PowerSupply[0].BiosEnable, "he wall");
}

TEST_F(GetInfoPowerTest, LongTextsAreCutToTheirFields) {
    const std::string text(40, 't');
    AddSupply(4, 2, 0, text);
    Place();
    RecordImage expected(kSuppliesSize);
    expected.Number(0, 1)
        .Number(4, 0)
        .Copied(8, "M" + text.substr(0, 30))
        .Copied(8 + 64, "D" + text.substr(0, 30))
        .Copied(8 + 112, "S" + text.substr(0, 14))
        .Text(8 + 128, "present");
    ExpectRecord(kPower, RecordImage(kSuppliesSize), expected);
}

TEST_F(GetInfoPowerTest, ThirtyTwoSuppliesAreCountedAndThirtyOneFilledPastTheRecordsEight) {
    for (int i = 0; i < 40; ++i) AddSupply(4, 2, 1, std::to_string(i));
    Place();
    const std::size_t size = 8 + 152 * 32;
    RecordImage expected(size);
    expected.Number(0, 32).Number(4, 31);
    for (std::size_t i = 0; i < 31; ++i) Supply(expected, i, std::to_string(i), "present");
    ExpectRecord(kPower, RecordImage(size), expected);
}

TEST_F(GetInfoPowerTest, WithoutSuppliesOnlyTheNumbersAreWritten) {
    table.Add(0, 0, 20);
    Place();
    ExpectRecord(kPower, RecordImage(kSuppliesSize),
                 RecordImage(kSuppliesSize).Number(0, 0).Number(4, 0));
    ExpectRecord(kUps, RecordImage(kSuppliesSize), RecordImage(kSuppliesSize).Number(0, 0));
}

}  // namespace
