// SPDX-License-Identifier: MIT
//
// GetInfo for the processors (0x20000) and their caches.
#include "support/InterfaceTest.h"

namespace {

constexpr unsigned long kProcessors = 0x20000;
constexpr std::size_t kProcessorsSize = 3396;
constexpr std::size_t kElementSize = 424;

constexpr std::size_t RecordOf(std::size_t processors) {
    return 4 + kElementSize * processors;
}

// Offsets within one element.
constexpr std::size_t kFamily = 0;
constexpr std::size_t kMaxSpeed = 64;
constexpr std::size_t kCurrentSpeed = 80;
constexpr std::size_t kExternalClock = 96;
constexpr std::size_t kManufacturer = 112;
constexpr std::size_t kCaches = 176;
constexpr std::size_t kIsUht = 416;
constexpr std::size_t kIsDisabled = 420;

class GetInfoProcessorsTest : public InterfaceTest {
protected:
    sim::SmbiosStructure& AddProcessor(int status = 0x41) {
        return table.Add(4, handle++, 35)
            .Byte(24, static_cast<std::uint8_t>(status))
            .Word(26, 0xFFFF)
            .Word(28, 0xFFFF)
            .Word(30, 0xFFFF);
    }

    static std::size_t Element(std::size_t i) { return 4 + kElementSize * i; }

    // What a processor that says nothing but its status leaves, without caches.
    static void Plain(RecordImage& record, std::size_t i) {
        record.Text(Element(i) + kMaxSpeed, "Unknown")
            .Text(Element(i) + kCurrentSpeed, "Unknown")
            .Text(Element(i) + kExternalClock, "0 MHZ")
            .Text(Element(i) + kFamily, "Unknown");
    }

    static void AbsentCaches(RecordImage& record, std::size_t i, const std::string& text) {
        for (std::size_t level = 0; level < 3; ++level) {
            const std::size_t cache = Element(i) + kCaches + 80 * level;
            record.Copied(cache + 48, text);
            record.Text(cache + 16, text);
            record.Text(cache, text);
            record.Text(cache + 32, text);
        }
    }

    std::uint16_t handle = 0x400;
};

TEST_F(GetInfoProcessorsTest, EveryFieldOfAProcessorIsFilled) {
    table.Add(7, 0x701, 19).String(4, "L1").Word(7, 32).Word(9, 16).Byte(15, 2);
    table.Add(7, 0x702, 19).String(4, "L2").Word(7, 0x8010).Word(9, 512).Byte(15, 5);
    table.Add(7, 0x703, 19).Word(7, 1).Word(9, 0).Byte(15, 0);
    AddProcessor()
        .Byte(6, 178)
        .String(7, "Maker")
        .String(16, "unused version")
        .String(32, "unused serial")
        .Word(18, 133)
        .Word(20, 3600)
        .Word(22, 2800)
        .Word(26, 0x701)
        .Word(28, 0x702)
        .Word(30, 0x703);
    Place();
    RecordImage expected(kProcessorsSize);
    expected.Number(0, 1)
        .Text(4 + kFamily, "Pentium 4 Processor")
        .Text(4 + kMaxSpeed, "3600 MHZ")
        .Text(4 + kCurrentSpeed, "2800 MHZ")
        .Text(4 + kExternalClock, "133 MHZ")
        .Copied(4 + kManufacturer, "Maker");
    const std::size_t l1 = 4 + kCaches;
    expected.Text(l1, "32 KB").Text(l1 + 16, "16 KB").Text(l1 + 32, "2ns").Copied(l1 + 48, "L1");
    const std::size_t l2 = l1 + 80;
    expected.Text(l2, "1024 KB").Text(l2 + 16, "512 KB").Text(l2 + 32, "5ns").Copied(l2 + 48, "L2");
    const std::size_t l3 = l2 + 80;
    expected.Text(l3, "1 KB").Text(l3 + 16, "0 KB").Text(l3 + 32, "Unknown");
    ExpectRecord(kProcessors, RecordImage(kProcessorsSize), expected);
}

TEST_F(GetInfoProcessorsTest, LowStatusBitsDecideTheTwoFlags) {
    for (int status = 0; status < 256; ++status) {
        table = sim::SmbiosTable();
        AddProcessor(status);
        PlaceVersion(1, 0);
        release();
        RecordImage expected(kProcessorsSize);
        expected.Number(0, 1);
        Plain(expected, 0);
        const int low = status & 7;
        if (low == 2 || low == 3) expected.Number(4 + kIsDisabled, 1);
        if (low == 0) expected.Number(4 + kIsUht, 1);
        ExpectRecord(kProcessors, RecordImage(kProcessorsSize), expected);
    }
}

TEST_F(GetInfoProcessorsTest, EveryProcessorCountsWhateverItsStatus) {
    AddProcessor(0x00);
    AddProcessor(0x44);
    PlaceVersion(1, 0);
    RecordImage expected(kProcessorsSize);
    expected.Number(0, 2).Number(Element(0) + kIsUht, 1);
    Plain(expected, 0);
    Plain(expected, 1);
    ExpectRecord(kProcessors, RecordImage(kProcessorsSize), expected);
}

TEST_F(GetInfoProcessorsTest, LongestFamilyNameRunsIntoTheStepping) {
    AddProcessor().Byte(6, 177);
    PlaceVersion(1, 0);
    RecordImage expected(kProcessorsSize);
    expected.Number(0, 1);
    Plain(expected, 0);
    expected.Text(4 + kFamily, "Pentium III Processor with Intel SpeedStep Technology");
    ExpectRecord(kProcessors, RecordImage(kProcessorsSize), expected);
    ProcessorInformation record{};
    EXPECT_EQ(GetInfo(kProcessors, &record), 0);
    EXPECT_STREQ(record.cpu[0].stepping, "ology");
    EXPECT_STREQ(record.cpu[0].MaxSpeed, "Unknown");
}

TEST_F(GetInfoProcessorsTest, LongManufacturerIsCutToItsField) {
    AddProcessor().String(7, std::string(60, 'm'));
    PlaceVersion(1, 0);
    RecordImage expected(kProcessorsSize);
    expected.Number(0, 1);
    Plain(expected, 0);
    expected.Copied(4 + kManufacturer, std::string(47, 'm'));
    ExpectRecord(kProcessors, RecordImage(kProcessorsSize), expected);
}

TEST_F(GetInfoProcessorsTest, AbsentCachesUnder22AreNone) {
    AddProcessor();
    PlaceVersion(2, 2);
    RecordImage expected(kProcessorsSize);
    expected.Number(0, 1);
    Plain(expected, 0);
    AbsentCaches(expected, 0, "None");
    ExpectRecord(kProcessors, RecordImage(kProcessorsSize), expected);
}

TEST_F(GetInfoProcessorsTest, AbsentCachesUnder23RunFromFieldToField) {
    AddProcessor();
    PlaceVersion(2, 3);
    RecordImage expected(kProcessorsSize);
    expected.Number(0, 1);
    Plain(expected, 0);
    AbsentCaches(expected, 0, "Bios Not Provide");
    ExpectRecord(kProcessors, RecordImage(kProcessorsSize), expected);

    // Sixteen characters fill a field; the terminator empties the text after it.
    ProcessorInformation record{};
    EXPECT_EQ(GetInfo(kProcessors, &record), 0);
    for (const CACHE& cache : record.cpu[0].cache) {
        EXPECT_EQ(std::string(cache.MaxSize, 16), "Bios Not Provide");
        EXPECT_STREQ(cache.InstalledSize, "");
        EXPECT_EQ(std::string(cache.speed, 16), "Bios Not Provide");
        EXPECT_STREQ(cache.designation, "");
    }
    EXPECT_EQ(record.cpu[0].IsUHT, 0);
}

TEST_F(GetInfoProcessorsTest, CachesThatDoNotExistAreLeftAlone) {
    AddProcessor().Word(26, 0x701).Word(28, 0x702).Word(30, 0);
    PlaceVersion(2, 3);
    RecordImage expected(kProcessorsSize);
    expected.Number(0, 1);
    Plain(expected, 0);
    ExpectRecord(kProcessors, RecordImage(kProcessorsSize), expected);
}

TEST_F(GetInfoProcessorsTest, WithoutProcessorsOnlyTheQuantityIsWritten) {
    table.Add(0, 0, 20);
    Place();
    ExpectRecord(kProcessors, RecordImage(kProcessorsSize),
                 RecordImage(kProcessorsSize).Number(0, 0));
}

TEST_F(GetInfoProcessorsTest, SixteenProcessorsAreWrittenPastTheRecordsEight) {
    for (int i = 0; i < 20; ++i) AddProcessor().Word(18, static_cast<std::uint16_t>(i));
    PlaceVersion(1, 0);
    RecordImage expected(RecordOf(16));
    expected.Number(0, 16);
    for (std::size_t i = 0; i < 16; ++i) {
        Plain(expected, i);
        expected.Text(Element(i) + kExternalClock, std::to_string(i) + " MHZ");
    }
    ExpectRecord(kProcessors, RecordImage(RecordOf(16)), expected);
}

}  // namespace
