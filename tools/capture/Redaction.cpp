// SPDX-License-Identifier: MIT
//
// Each source by itself, then all of them for the values that were found.

#include "tools/capture/Redaction.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "tools/base/Text.h"
#include "tools/capture/FruRequests.h"

namespace tool {
namespace {

// Words such as "None" or "1" may stand anywhere.
bool IsUnmistakable(const std::string& secret) {
    constexpr std::size_t kMinSize = 5;
    return secret.size() >= kMinSize &&
           std::any_of(secret.begin(), secret.end(), [](char c) { return c >= '0' && c <= '9'; });
}

template <class Text>
void MarkAll(const Secrets& secrets, Text& text) {
    for (const std::string& secret : secrets) {
        if (!IsUnmistakable(secret)) continue;
        for (auto at = text.begin();;) {
            at = std::search(at, text.end(), secret.begin(), secret.end(), [](auto a, auto b) {
                return static_cast<unsigned char>(a) == static_cast<unsigned char>(b);
            });
            if (at == text.end()) break;
            at = std::fill_n(at, secret.size(), kMark);
        }
    }
}

// Of a text that is filled up with blanks. Returns it.
std::string MarkPadded(CapturedBytes& bytes, std::size_t at, std::size_t size) {
    std::string text;
    for (std::size_t i = at; i < at + size; ++i) {
        text += static_cast<char>(bytes[i]);
        if (bytes[i] != ' ' && bytes[i] != 0) bytes[i] = kMark;
    }
    return text;
}

std::uint8_t SumOf(const CapturedBytes& bytes) {
    std::uint8_t sum = 0;
    for (const std::uint8_t byte : bytes) sum = static_cast<std::uint8_t>(sum + byte);
    return sum;
}

// Of a record in the BMC's repository at `at`, or of the part of it that is there: the GUID of a
// management controller (IPMI 2.0, 43.10).
void RedactRecord(CapturedBytes& bytes, std::size_t at) {
    constexpr std::size_t kRecordTypeAt = 3;
    constexpr std::uint8_t kControllerConfirmation = 0x13;
    constexpr std::size_t kGuidAt = 16;
    constexpr std::size_t kGuidSize = 16;
    if (bytes.size() <= at + kRecordTypeAt || bytes[at + kRecordTypeAt] != kControllerConfirmation)
        return;
    for (std::size_t i = at + kGuidAt; i < std::min(at + kGuidAt + kGuidSize, bytes.size()); ++i)
        bytes[i] = kMark;
}

}  // namespace

void RedactIdentity(CapturedBytes& identity, Secrets& secrets) {
    // ATA8-ACS, 7.16.7: words 10, 108, 129, 176 and 255. Words 112 to 115 continue a world wide
    // name of 128 bits (ATA/ATAPI-7), and 129 to 159 are the vendor's.
    constexpr std::size_t kSerialAt = 20;
    constexpr std::size_t kSerialSize = 20;
    constexpr std::size_t kWorldWideNameAt = 216;
    constexpr std::size_t kWorldWideNameSize = 16;
    constexpr std::size_t kVendorAt = 258;
    constexpr std::size_t kVendorSize = 62;
    constexpr std::size_t kMediaSerialAt = 352;
    constexpr std::size_t kMediaSerialSize = 60;
    constexpr std::size_t kSignatureAt = 510;
    constexpr std::uint8_t kHasChecksum = 0xA5;
    const std::uint8_t before = SumOf(identity);
    const std::string serial = MarkPadded(identity, kSerialAt, kSerialSize);
    secrets.insert(std::string(Trimmed(serial.substr(0, serial.find('\0')))));
    (void)MarkPadded(identity, kWorldWideNameAt, kWorldWideNameSize);
    (void)MarkPadded(identity, kVendorAt, kVendorSize);
    (void)MarkPadded(identity, kMediaSerialAt, kMediaSerialSize);
    if (identity[kSignatureAt] == kHasChecksum)
        identity.back() = static_cast<std::uint8_t>(identity.back() + before - SumOf(identity));
}

void Redact(MachineCapture& capture) {
    Secrets secrets;
    if (capture.smbios) RedactSmbiosTable(capture.smbios->table, secrets);
    if (capture.bmc) RedactFruImage(capture.bmc->inventory, secrets);
    for (DriveCapture& drive : capture.drives)
        if (drive.identity) RedactIdentity(*drive.identity, secrets);
    if (capture.smbios) MarkAll(secrets, capture.smbios->table);
    for (DriveCapture& drive : capture.drives)
        for (auto& [file, text] : drive.files) MarkAll(secrets, text);
    if (!capture.bmc) return;
    for (CapturedBytes& record : capture.bmc->records) RedactRecord(record, 0);
    constexpr std::size_t kRecordAt = 2;  // after the ID of the next one
    for (BmcExchange& exchange : capture.bmc->others)
        if (std::strcmp(exchange.command, kGetSdr) == 0) RedactRecord(exchange.answer, kRecordAt);
    // Of what the BMC has answered otherwise, as much as it has answered.
    for (BmcExchange& exchange : capture.bmc->others) {
        if (std::strcmp(exchange.command, kReadFruData) != 0 || exchange.answer.empty()) continue;
        CapturedBytes answer = AnswerFromFruImage(capture.bmc->inventory, exchange.data);
        answer.resize(exchange.answer.size());
        answer.front() = exchange.answer.front();
        exchange.answer = answer;
    }
}

}  // namespace tool
