// SPDX-License-Identifier: MIT
//
// Marks in place of what identifies a machine, and checksums that stay right.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

#include "tools/capture/Redaction.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using tool::CapturedBytes;

CapturedBytes BytesOf(const std::string& text) {
    return CapturedBytes(text.begin(), text.end());
}

std::string TextOf(const CapturedBytes& bytes) {
    return std::string(bytes.begin(), bytes.end());
}

std::uint8_t SumOf(const CapturedBytes& bytes, std::size_t at, std::size_t size) {
    return static_cast<std::uint8_t>(
        std::accumulate(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                        bytes.begin() + static_cast<std::ptrdiff_t>(at + size), 0u));
}

// A structure of this type whose formatted area holds these bytes.
std::string StructureOf(char type, const std::string& bytes, const std::string& texts) {
    return type + std::string(1, static_cast<char>(4 + bytes.size())) + "HH" + bytes + texts;
}

std::string RedactedTable(const std::string& table, tool::Secrets* found = nullptr) {
    CapturedBytes bytes = BytesOf(table);
    tool::Secrets secrets;
    tool::RedactSmbiosTable(bytes, secrets);
    if (found != nullptr) *found = secrets;
    return TextOf(bytes);
}

TEST(SmbiosRedactionTest, SystemLosesSerialNumberAndUuid) {
    const std::string texts("maker\0product\0serial\0\0", 22);
    const std::string uuid = "0123456789abcdef";
    tool::Secrets secrets;
    EXPECT_EQ(
        RedactedTable(StructureOf(1, "\1\2" + std::string(1, '\0') + "\3" + uuid, texts), &secrets),
        StructureOf(1, "\1\2" + std::string(1, '\0') + "\3" + std::string(16, 'X'),
                    std::string("maker\0product\0XXXXXX\0\0", 22)));
    EXPECT_THAT(secrets, ElementsAre("serial"));
}

TEST(SmbiosRedactionTest, UuidThatIsNoneStays) {
    for (const char none : {'\0', '\xFF'}) {
        const std::string table =
            StructureOf(1, std::string(4, '\0') + std::string(16, none), std::string(2, '\0'));
        EXPECT_EQ(RedactedTable(table), table);
    }
}

TEST(SmbiosRedactionTest, TextsOfVendorsAndOemStringsAreMarked) {
    const std::string texts("four\0five\0\0", 11);
    const std::string marked("XXXX\0XXXX\0\0", 11);
    EXPECT_EQ(RedactedTable(StructureOf(11, "\2", texts)), StructureOf(11, "\2", marked));
    EXPECT_EQ(RedactedTable(StructureOf('\x80', "ab", texts)), StructureOf('\x80', "ab", marked));
    EXPECT_EQ(RedactedTable(StructureOf(8, "ab", texts)), StructureOf(8, "ab", texts));
}

TEST(SmbiosRedactionTest, TextsOfInactiveStructuresAreMarked) {
    EXPECT_EQ(RedactedTable(StructureOf(126, "ab", std::string("serial\0\0", 8))),
              StructureOf(126, "ab", std::string("XXXXXX\0\0", 8)));
}

TEST(SmbiosRedactionTest, DataOfAHostInterfaceAreMarked) {
    const std::string none(2, '\0');
    EXPECT_EQ(RedactedTable(StructureOf(42, "\x40\5usb01\1\4\20uuid-and-address", none)),
              StructureOf(42, "\x40\5" + std::string(24, 'X'), none));
    for (const std::string data : {"", "\x40", "\x40\1"})
        EXPECT_EQ(RedactedTable(StructureOf(42, data, none)), StructureOf(42, data, none));
}

// The library shows what lies after such structures.
TEST(SmbiosRedactionTest, StructuresAfterADamagedOneAreReached) {
    const std::string board =
        StructureOf(2, std::string("\0\0\0\1\2", 5), std::string("s1\0a1\0\0", 7));
    const std::string redacted =
        StructureOf(2, std::string("\0\0\0\1\2", 5), std::string("XX\0XX\0\0", 7));
    for (const std::string& damaged :
         {std::string("\x09\0HHtext\0\0", 10), StructureOf(9, "ab", std::string("\0text\0\0", 7))})
        EXPECT_EQ(RedactedTable(damaged + board), damaged + redacted);
}

// As the library counts them.
TEST(SmbiosRedactionTest, EmptyTextCounts) {
    const std::string fields("\0\0\0\2\3", 5);
    EXPECT_EQ(RedactedTable(StructureOf(2, fields, std::string("\0s1\0a1\0\0", 8))),
              StructureOf(2, fields, std::string("\0XX\0XX\0\0", 8)));
}

TEST(SmbiosRedactionTest, EveryStructureOfATableIsReached) {
    const std::string board =
        StructureOf(2, std::string("\0\0\0\1\2", 5), std::string("s1\0a1\0\0", 7));
    const std::string redacted =
        StructureOf(2, std::string("\0\0\0\1\2", 5), std::string("XX\0XX\0\0", 7));
    const std::string empty = StructureOf(126, "", std::string(2, '\0'));
    EXPECT_EQ(RedactedTable(board + empty + board), redacted + empty + redacted);
}

TEST(SmbiosRedactionTest, DamagedTablesAreSurvived) {
    const std::string table =
        StructureOf(1, std::string("\0\0\0\1", 4), std::string("serial\0\0", 8));
    for (std::size_t size = 0; size <= table.size(); ++size)
        EXPECT_EQ(RedactedTable(table.substr(0, size)).size(), size);
    EXPECT_EQ(RedactedTable("\1\3HH"), "\1\3HH");
    EXPECT_EQ(
        RedactedTable(StructureOf(1, std::string("\0\0\0\x63", 4), std::string(2, '\0'))).size(),
        10u);
}

// An area with these fields, filled up and with a checksum.
std::string AreaOf(const std::string& head, const std::string& fields) {
    std::string area = std::string("\1\0", 2) + head + fields + "\xC1";
    while (area.size() % 8 != 7) area += '\0';
    area[1] = static_cast<char>((area.size() + 1) / 8);
    const CapturedBytes bytes = BytesOf(area);
    return area + static_cast<char>(-SumOf(bytes, 0, bytes.size()));
}

TEST(FruRedactionTest, SerialNumbersOfAllAreasAreMarkedAndChecksumsStayRight) {
    const std::string chassis = AreaOf("\x17",
                                       "\xC2"
                                       "P1"
                                       "\xC3"
                                       "S-1"
                                       "\xC4"
                                       "tags");
    const std::string board = AreaOf(std::string("\0\0\0\0", 4),
                                     "\xC2"
                                     "mm"
                                     "\xC2"
                                     "pr"
                                     "\xC3"
                                     "S-2"
                                     "\xC2"
                                     "P2");
    const std::string product = AreaOf(std::string(1, '\0'),
                                       "\xC2"
                                       "mm"
                                       "\xC2"
                                       "nn"
                                       "\xC2"
                                       "pp"
                                       "\xC2"
                                       "vv"
                                       "\xC3"
                                       "S-3"
                                       "\xC2"
                                       "AT");
    std::string image = std::string("\1\0", 2);
    std::size_t at = 1;
    for (const std::string* area : {&chassis, &board, &product}) {
        image += static_cast<char>(at);
        at += area->size() / 8;
    }
    image += std::string("\0\0\0", 3) + chassis + board + product + "after the areas";
    CapturedBytes bytes = BytesOf(image);
    tool::Secrets secrets;
    tool::RedactFruImage(bytes, secrets);
    const std::string text = TextOf(bytes);
    EXPECT_EQ(text.size(), image.size());
    for (const char* const gone : {"S-1", "S-2", "S-3", "AT", "tags", "after"})
        EXPECT_EQ(text.find(gone), std::string::npos) << gone;
    for (const char* const kept : {"P1", "P2", "pr"})
        EXPECT_NE(text.find(kept), std::string::npos) << kept;
    EXPECT_EQ(SumOf(bytes, 8, chassis.size()), 0);
    EXPECT_EQ(SumOf(bytes, 8 + chassis.size(), board.size()), 0);
    EXPECT_EQ(SumOf(bytes, 8 + chassis.size() + board.size(), product.size()), 0);
    EXPECT_THAT(secrets, Contains("S-2"));
}

TEST(FruRedactionTest, MarksHaveTheEncodingOfTheField) {
    // Six-bit text of six characters, which take five bytes; BCD plus of two.
    const std::string chassis = AreaOf("\x17",
                                       "\xC2"
                                       "P1"
                                       "\x85"
                                       "12345"
                                       "\x42"
                                       "\x12\x34");
    const std::string image = std::string("\1\0\1\0\0\0\0\0", 8) + chassis;
    CapturedBytes bytes = BytesOf(image);
    tool::Secrets secrets;
    tool::RedactFruImage(bytes, secrets);
    EXPECT_EQ(TextOf(bytes).substr(8 + 6, 9), std::string("\x85\x38\x8E\xE3\x38\x8E\x42\0\0", 9));
}

TEST(FruRedactionTest, RecordsOfVendorsAreMarkedAndTheirChecksumsStayRight) {
    const auto record = [](char type, char end, const std::string& data) {
        std::string header{type, end, static_cast<char>(data.size())};
        const CapturedBytes bytes = BytesOf(data);
        header += static_cast<char>(-SumOf(bytes, 0, bytes.size()));
        const CapturedBytes start = BytesOf(header);
        return header + static_cast<char>(-SumOf(start, 0, start.size())) + data;
    };
    const std::string power = record(0, 2, "power");
    const std::string access = record(3, 2, "uuid!");
    const std::string vendor = record('\xC0', '\x82', "tag");
    CapturedBytes bytes = BytesOf(std::string("\1\0\0\0\0\1\0\0", 8) + power + access + vendor);
    tool::Secrets secrets;
    tool::RedactFruImage(bytes, secrets);
    const std::string text = TextOf(bytes);
    EXPECT_NE(text.find("power"), std::string::npos);
    EXPECT_EQ(text.find("uuid!"), std::string::npos);
    EXPECT_EQ(text.find("tag"), std::string::npos);
    for (const auto& [at, size] : {std::pair<std::size_t, std::size_t>{18, 5}, {28, 3}}) {
        EXPECT_EQ(SumOf(bytes, at, 5), 0) << "header at " << at;
        EXPECT_EQ(static_cast<std::uint8_t>(SumOf(bytes, at + 5, size) + bytes[at + 3]), 0);
    }
}

TEST(FruRedactionTest, AnyBytesAreSurvived) {
    CapturedBytes bytes(512);
    std::uint32_t state = 1;
    for (int round = 0; round < 2000; ++round) {
        for (std::uint8_t& byte : bytes) {
            state = state * 1664525 + 1013904223;
            byte = static_cast<std::uint8_t>(state >> 24);
        }
        CapturedBytes image(bytes.begin(), bytes.begin() + round % 512);
        tool::Secrets secrets;
        tool::RedactFruImage(image, secrets);
        EXPECT_EQ(image.size(), static_cast<std::size_t>(round % 512));
    }
}

TEST(IdentityRedactionTest, SerialNumberAndWorldWideNameAreMarked) {
    CapturedBytes identity(512);
    const std::string serial = "      WD-WCC1        ";
    std::copy(serial.begin(), serial.end() - 1, identity.begin() + 20);
    identity[216] = 0x50;
    identity[510] = 0xA5;
    identity[511] = static_cast<std::uint8_t>(-SumOf(identity, 0, 511));
    tool::Secrets secrets;
    tool::RedactIdentity(identity, secrets);
    EXPECT_EQ(TextOf(identity).substr(20, 20), "      XXXXXXX       ");
    EXPECT_EQ(identity[216], 'X');
    EXPECT_EQ(SumOf(identity, 0, 512), 0);
    EXPECT_THAT(secrets, ElementsAre("WD-WCC1"));
}

TEST(IdentityRedactionTest, LongWorldWideNameAndWordsOfTheVendorAreMarked) {
    CapturedBytes identity(512, 'i');
    tool::Secrets secrets;
    tool::RedactIdentity(identity, secrets);
    EXPECT_EQ(TextOf(identity).substr(215, 18), "i" + std::string(16, 'X') + "i");
    EXPECT_EQ(TextOf(identity).substr(257, 64), "i" + std::string(62, 'X') + "i");
}

TEST(RedactionTest, GuidOfAControllerInItsRecordIsMarked) {
    const std::string guid = "0123456789abcdef";
    const std::string head("\1\0\x51\x13\x1B-----------", 16);
    tool::MachineCapture capture;
    tool::BmcCapture& bmc = capture.bmc.emplace();
    bmc.records = {BytesOf(head + guid), BytesOf("\1\1\x51\x12" + guid + guid)};
    bmc.others.push_back({"Get SDR", 0, {}, BytesOf("\5\5" + head + guid.substr(0, 4))});
    const auto other = bmc.records[1];
    tool::Redact(capture);
    EXPECT_EQ(TextOf(bmc.records[0]), head + std::string(16, 'X'));
    EXPECT_EQ(bmc.records[1], other);
    EXPECT_EQ(TextOf(bmc.others[0].answer), "\5\5" + head + "XXXX");
}

TEST(RedactionTest, ValueThatCannotBeAnotherWordIsMarkedEverywhere) {
    tool::MachineCapture capture;
    tool::SmbiosCapture& smbios = capture.smbios.emplace();
    smbios.table =
        BytesOf(StructureOf(2, std::string("\0\0\0\1\2", 5), std::string("AB-1234\0None\0\0", 14)) +
                StructureOf(8, "", std::string("Tag AB-1234, None\0\0", 19)));
    capture.drives.push_back({'a', {{"model", "Disk AB-1234\n"}}, false, {}, 0, {}});
    tool::Redact(capture);
    EXPECT_NE(TextOf(smbios.table).find("Tag XXXXXXX, None"), std::string::npos);
    EXPECT_EQ(capture.drives[0].files["model"], "Disk XXXXXXX\n");
}

TEST(RedactionTest, AnswersAboutTheInventoryAreMarked) {
    tool::MachineCapture capture;
    tool::BmcCapture& bmc = capture.bmc.emplace();
    bmc.inventory = BytesOf(std::string("\1\0\1\0\0\0\0\0", 8) + AreaOf("\x17",
                                                                        "\xC2"
                                                                        "P1"
                                                                        "\xC3"
                                                                        "S-1"));
    bmc.others.push_back({"Read FRU Data",
                          0,
                          {0, 8, 0, 16},
                          BytesOf("\x0B"
                                  "..P1.S-1...")});
    tool::Redact(capture);
    EXPECT_EQ(TextOf(bmc.others[0].answer).find("S-1"), std::string::npos);
    EXPECT_EQ(bmc.others[0].answer.size(), 12u);
}

TEST(RedactionTest, AnswersThatEndBeforeWhatIsSecretStay) {
    tool::MachineCapture capture;
    tool::BmcCapture& bmc = capture.bmc.emplace();
    bmc.others = {{"Get SDR", 0, {}, {5, 5, 1, 0, 0x51}},
                  {"Get SDR", 0, {}, {}},
                  {"Read FRU Data", 0, {0, 0, 0, 8}, {}}};
    tool::Redact(capture);
    EXPECT_EQ(bmc.others[0].answer, (CapturedBytes{5, 5, 1, 0, 0x51}));
    EXPECT_EQ(bmc.others[1].answer, CapturedBytes());
    EXPECT_EQ(bmc.others[2].answer, CapturedBytes());
}

}  // namespace
