// SPDX-License-Identifier: MIT
//
// GetInfo for the memory record (0x40000): the copy of the reader's summary.
#include "support/InterfaceTest.h"

namespace {

constexpr unsigned long kMemory = 0x40000;
constexpr std::size_t kMemorySize = 1992;

class GetInfoMemoryTest : public InterfaceTest {
protected:
    // Slots with modules of 256 MB; the type bits decide whether a bank counts as used.
    void AddModules(const std::vector<int>& typeBits) {
        const auto slots = static_cast<std::uint8_t>(typeBits.size());
        sim::SmbiosStructure& controller =
            table.Add(5, 0x500, static_cast<std::uint8_t>(16 + 2 * slots)).Byte(14, slots);
        for (std::uint8_t i = 0; i < slots; ++i) {
            const auto handle = static_cast<std::uint16_t>(i + 1);
            controller.Word(15u + 2u * i, handle);
            table.Add(6, handle, 12)
                .String(4, "SLOT" + std::to_string(i))
                .Byte(9, static_cast<std::uint8_t>(i))
                .Word(7, static_cast<std::uint16_t>(typeBits[i]));
        }
    }

    // The bank of the module in slot i, of size 2^i.
    static void Module(RecordImage& record, std::size_t bank, int i, const std::string& type) {
        const std::size_t at = 8 + 124 * bank;
        record.Text(at, std::to_string(1 << i) + " MB")
            .Text(at + 16, "")
            .Text(at + 32, type)
            .Text(at + 56, "")
            .Text(at + 88, "")
            .Number(at + 120, i);
    }
};

TEST_F(GetInfoMemoryTest, EveryFieldOfABankIsCopied) {
    table.Add(17, 1, 27)
        .String(16, "DIMM2B")
        .String(17, "Bank 1")
        .Word(12, 1024)
        .Byte(18, 18)
        .Word(19, 0x0080)
        .Word(21, 333)
        .String(23, "Maker");
    Place();
    ExpectRecord(kMemory, RecordImage(kMemorySize),
                 RecordImage(kMemorySize)
                     .Number(0, 1024)
                     .Number(4, 1)
                     .Text(8, "1024 MB")           // size
                     .Text(8 + 16, "333 MHZ")      // speed
                     .Text(8 + 32, "DDR")          // type
                     .Text(8 + 56, "Synchronous")  // TypeDetail
                     .Text(8 + 88, "Maker")        // manufacturer
                     .Number(8 + 120, 10));        // SlotNumber
}

TEST_F(GetInfoMemoryTest, UnknownTypeIsATypeLikeAnyOther) {
    table.Add(17, 1, 27).String(16, "DIMM").String(17, "Bank").Word(12, 64);
    Place();
    RecordImage record(kMemorySize, 0);
    EXPECT_EQ(Get(kMemory, record), 0);
    EXPECT_EQ(record.NumberAt(4), 1);
    EXPECT_STREQ(static_cast<char*>(record.Data()) + 8 + 32, "Unknown");
}

TEST_F(GetInfoMemoryTest, BanksAreCopiedInOrder) {
    AddModules({0x100, 0x80, 0x400});
    Place();
    RecordImage expected(kMemorySize);
    expected.Number(0, 1 + 2 + 4).Number(4, 3);
    Module(expected, 0, 0, "DIMM");
    Module(expected, 1, 1, "SIMM");
    Module(expected, 2, 2, " SDRAM");
    ExpectRecord(kMemory, RecordImage(kMemorySize), expected);
}

TEST_F(GetInfoMemoryTest, EmptyTypeSkipsTheBankAfterItToo) {
    AddModules({0x100, 0, 0x80, 0x400, 0x10});
    Place();
    RecordImage expected(kMemorySize);
    expected.Number(0, 31).Number(4, 5);
    Module(expected, 0, 0, "DIMM");  // bank 1 is empty: on to bank 3
    Module(expected, 1, 3, " SDRAM");
    Module(expected, 2, 4, "EDO");
    ExpectRecord(kMemory, RecordImage(kMemorySize), expected);
}

TEST_F(GetInfoMemoryTest, EmptyTypesLeaveBanksOfTheRecordAlone) {
    AddModules({0, 0x80, 0});
    Place();
    RecordImage expected(kMemorySize);
    expected.Number(0, 7).Number(4, 3);
    ExpectRecord(kMemory, RecordImage(kMemorySize), expected);
}

TEST_F(GetInfoMemoryTest, DoubleStepEndsAtTheSixteenLocalBanks) {
    std::vector<int> types(16, 0x100);
    types[15] = 0;
    types[0] = 0;
    AddModules(types);
    Place();
    RecordImage expected(kMemorySize);
    expected.Number(0, 0xFFFF).Number(4, 16);
    for (std::size_t i = 2; i < 15; ++i) Module(expected, i - 2, static_cast<int>(i), "DIMM");
    // SlotNumber of "SLOT10" to "SLOT14" is their last digit.
    for (std::size_t i = 10; i < 15; ++i)
        expected.Number(8 + 124 * (i - 2) + 120, static_cast<std::int32_t>(i % 10));
    ExpectRecord(kMemory, RecordImage(kMemorySize), expected);
}

TEST_F(GetInfoMemoryTest, SixteenBanksAreCopiedAndNoMore) {
    for (int i = 0; i < 40; ++i)
        table.Add(17, static_cast<std::uint16_t>(i), 27)
            .String(16, "DIMM1")
            .String(17, "Bank")
            .Word(12, 10)
            .Byte(18, 15);
    Place();
    RecordImage expected(kMemorySize);
    expected.Number(0, 400).Number(4, 16);
    for (std::size_t i = 0; i < 16; ++i)
        expected.Text(8 + 124 * i, "10 MB")
            .Text(8 + 124 * i + 16, "")
            .Text(8 + 124 * i + 32, "SDRAM")
            .Text(8 + 124 * i + 56, "")
            .Text(8 + 124 * i + 88, "")
            .Number(8 + 124 * i + 120, 1);
    ExpectRecord(kMemory, RecordImage(kMemorySize), expected);
}

TEST_F(GetInfoMemoryTest, FailedSummaryReturnsZeroAndLeavesTheBufferAsTheCallerGaveIt) {
    table.Add(0, 0, 20);
    table.Add(6, 1, 12).Byte(9, 8);  // counts for the total, but no controller lists it
    Place();
    ExpectRecord(kMemory, RecordImage(kMemorySize), RecordImage(kMemorySize));
}

TEST_F(GetInfoMemoryTest, SummaryWithoutBanksIsCopied) {
    table.Add(5, 0x500, 18).Byte(14, 1).Word(15, 9);
    table.Add(6, 1, 12).Byte(9, 8);
    Place();
    ExpectRecord(kMemory, RecordImage(kMemorySize),
                 RecordImage(kMemorySize).Number(0, 256).Number(4, 0));
}

}  // namespace
