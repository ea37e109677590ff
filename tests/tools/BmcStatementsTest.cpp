// SPDX-License-Identifier: MIT
//
// A captured BMC as statements of a machine file, and the words that they have in common.

#include <gtest/gtest.h>

#include <cerrno>

#include "tools/capture/BmcStatements.h"
#include "tools/capture/FruRequests.h"
#include "tools/capture/StatementWords.h"

namespace tool {
namespace {

constexpr const char* kHead = "bmc kcs firmware 1 0\n";

BmcCapture Kcs() {
    BmcCapture bmc;
    bmc.interface = "kcs";
    return bmc;
}

std::string ReadingText(int lun, const CapturedBytes& answer) {
    BmcCapture bmc = Kcs();
    bmc.readings.push_back({"Get Sensor Reading", lun, {0x30}, answer});
    return BmcStatements(bmc);
}

// Of the sensor 0x30, which a record names or not.
std::string ThresholdText(bool isKnown, int lun, const CapturedBytes& answer) {
    BmcCapture bmc = Kcs();
    if (isKnown) bmc.records.push_back({0, 0, 0x51, 1, 3, 0x20, 0, 0x30});
    bmc.thresholds.push_back({"Get Sensor Thresholds", lun, {0x30}, answer});
    const std::string text = BmcStatements(bmc);
    const std::string head = std::string(kHead) + (isKnown ? "sdr sdr.bin\n" : "");
    EXPECT_EQ(text.substr(0, head.size()), head);
    return text.substr(head.size());
}

TEST(BmcStatementsTest, ReadingOfTheUsualFormIsAStatement) {
    EXPECT_EQ(ReadingText(0, {70, 0xC0, 0, 0}), std::string(kHead) + "reading 0x30 70\n");
    EXPECT_EQ(ReadingText(0, {5, 0xE0, 0, 0}), std::string(kHead) + "reading 0x30 unavailable 5\n");
}

TEST(BmcStatementsTest, StatesOfEitherByteAreAStatement) {
    EXPECT_EQ(ReadingText(0, {0, 0xC0, 1, 0}),
              std::string(kHead) + "reading 0x30 0\nstates 0x30 0x01 0x00\n");
    EXPECT_EQ(ReadingText(0, {0, 0xC0, 0, 0x80}),
              std::string(kHead) + "reading 0x30 0\nstates 0x30 0x00 0x80\n");
}

TEST(BmcStatementsTest, ReadingOfAnotherFormIsWrittenAsItCame) {
    EXPECT_EQ(ReadingText(1, {70, 0xC0, 0, 0}),
              std::string(kHead) + "answer \"Get Sensor Reading\" lun 1 30 -> 00 46 C0 00 00\n");
    EXPECT_EQ(ReadingText(0, {70, 0x80, 0, 0}),
              std::string(kHead) + "answer \"Get Sensor Reading\" 30 -> 00 46 80 00 00\n")
        << "scanning is disabled";
    EXPECT_EQ(ReadingText(0, {}), std::string(kHead) + "answer \"Get Sensor Reading\" 30 -> FF\n");
}

TEST(BmcStatementsTest, ThresholdsThatASimulatedBmcGivesAnywayAreLeftOut) {
    EXPECT_EQ(ThresholdText(true, 0, CapturedBytes(7)), "") << "of a sensor that a record names";
    EXPECT_EQ(ThresholdText(false, 0, {}), "") << "refused for a sensor that no record names";
}

TEST(BmcStatementsTest, ThresholdsOfTheUsualFormAreAStatement) {
    EXPECT_EQ(ThresholdText(true, 0, {0x3F, 1, 2, 3, 4, 5, 6}),
              "thresholds 0x30 0x3F 1 2 3 4 5 6\n");
    EXPECT_EQ(ThresholdText(false, 0, CapturedBytes(7)), "thresholds 0x30 0x00 0 0 0 0 0 0\n");
}

TEST(BmcStatementsTest, ThresholdsOfAnotherFormAreWrittenAsTheyCame) {
    EXPECT_EQ(ThresholdText(true, 0, {0x40, 1, 2, 3, 4, 5, 6}),
              "answer \"Get Sensor Thresholds\" 30 -> 00 40 01 02 03 04 05 06\n")
        << "a mask with a bit that is no threshold's";
    EXPECT_EQ(ThresholdText(true, 0, {}), "answer \"Get Sensor Thresholds\" 30 -> FF\n")
        << "refused for a sensor that a record names";
    EXPECT_EQ(ThresholdText(false, 1, {}), "answer \"Get Sensor Thresholds\" lun 1 30 -> FF\n");
    EXPECT_EQ(ThresholdText(false, 0, {0x3F}), "answer \"Get Sensor Thresholds\" 30 -> 00 3F\n");
}

TEST(BmcStatementsTest, RecordThatEndsBeforeItsSensorsNumberNamesNoSensor) {
    BmcCapture bmc = Kcs();
    bmc.records.push_back({0, 0, 0x51, 2, 2, 0x20, 0});
    for (int number = 0; number <= 0xFF; ++number)
        bmc.thresholds.push_back(
            {"Get Sensor Thresholds", 0, {static_cast<std::uint8_t>(number)}, {}});
    EXPECT_EQ(BmcStatements(bmc), std::string(kHead) + "sdr sdr.bin\n");
}

TEST(StatementWordsTest, QuotesBackslashesAndOtherBytesAreEscaped) {
    EXPECT_EQ(QuotedText("a\"b\\c"), "\"a\\\"b\\\\c\"");
    EXPECT_EQ(QuotedText("\x1F\x20~\x7F\xE9"), "\"\\x1F ~\\x7F\\xE9\"");
    EXPECT_EQ(QuotedText(std::string_view("a\0b", 3)), "\"a b\"") << "no text can hold a byte 00";
}

TEST(StatementWordsTest, ErrorThatNoStatementCanNameIsAnInputOutputError) {
    EXPECT_EQ(OpenErrorName(EACCES), "EACCES");
    EXPECT_EQ(OpenErrorName(ENOMEDIUM), "EIO");
}

TEST(FruRequestsTest, InventoryEndsWhereTheBmcGivesNoMoreBytes) {
    const CapturedBytes thirtyTwoBytes{32, 0, 0};
    for (const CapturedBytes& end : {CapturedBytes{}, CapturedBytes{0}}) {
        const auto read = [&end](const CapturedBytes& data) {
            CapturedBytes answer(17, 'i');
            if (data[1] != 0) answer = end;
            return BmcExchange{kReadFruData, 0, data, answer};
        };
        EXPECT_EQ(ReadFruImage(thirtyTwoBytes, read), CapturedBytes(16, 'i'));
    }
}

}  // namespace
}  // namespace tool
