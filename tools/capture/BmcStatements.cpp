// SPDX-License-Identifier: MIT
//
// What `reading`, `states` and `thresholds` can express is written with them. An answer of another
// form is written as it came.

#include "tools/capture/BmcStatements.h"

#include <algorithm>
#include <cstdio>
#include <set>

#include "tools/base/Text.h"
#include "tools/capture/StatementWords.h"

namespace tool {
namespace {

std::string AnswerLine(const BmcExchange& exchange) {
    // The library does not pass the completion code on. Unspecified error: IPMI 2.0, 5.2.
    constexpr unsigned kUnspecified = 0xFF;
    std::string line = "answer " + QuotedText(exchange.command);
    if (exchange.lun != 0) line += " lun " + std::to_string(exchange.lun);
    char text[8];
    const auto add = [&](unsigned byte) {
        std::snprintf(text, sizeof text, " %02X", byte);
        line += text;
    };
    for (const std::uint8_t byte : exchange.data) add(byte);
    line += " ->";
    add(exchange.answer.empty() ? kUnspecified : 0);
    for (const std::uint8_t byte : exchange.answer) add(byte);
    return line + '\n';
}

// The sensors that a simulated BMC has by its records.
std::set<int> SensorsOfRecords(const BmcCapture& bmc) {
    constexpr std::size_t kTypeAt = 3;
    constexpr std::size_t kNumberAt = 7;
    std::set<int> numbers;
    for (const CapturedBytes& record : bmc.records)
        if ((record[kTypeAt] == 1 || record[kTypeAt] == 2) && record.size() > kNumberAt)
            numbers.insert(record[kNumberAt]);
    return numbers;
}

class Statements {
public:
    explicit Statements(const BmcCapture& bmc) : bmc_(bmc), known_(SensorsOfRecords(bmc)) {}

    std::string Write() {
        text_ = "bmc " + bmc_.interface + " firmware " + std::to_string(bmc_.majorFirmware) + ' ' +
                std::to_string(bmc_.minorFirmware) + '\n';
        if (!bmc_.records.empty()) text_ += "sdr sdr.bin\n";
        if (!bmc_.inventory.empty()) text_ += "inventory fru.bin\n";
        for (const BmcExchange& exchange : bmc_.readings) WriteReading(exchange);
        for (const BmcExchange& exchange : bmc_.thresholds) WriteThresholds(exchange);
        for (const auto& [number, medium, protocol] : bmc_.channels)
            text_ += "channel " + std::to_string(number) + ' ' + std::to_string(medium) + ' ' +
                     std::to_string(protocol) + '\n';
        for (const BmcExchange& exchange : bmc_.others) text_ += AnswerLine(exchange);
        return std::move(text_);
    }

private:
    // A statement about the sensor that the exchange is about, with its name as a comment.
    void Add(const char* word, const BmcExchange& exchange, const std::string& values) {
        const int number = exchange.data.front();
        const auto name = bmc_.names.find(number);
        text_ += word + HexText(static_cast<unsigned>(number)) + values;
        if (name != bmc_.names.end() && !name->second.empty())
            text_ += "  # " + Printable(name->second);
        text_ += '\n';
    }

    void WriteReading(const BmcExchange& exchange) {
        constexpr std::uint8_t kScanned = 0xC0;
        constexpr std::uint8_t kUnavailable = 0xE0;
        const CapturedBytes& answer = exchange.answer;
        const bool isUsual = exchange.lun == 0 && answer.size() == 4 &&
                             (answer[1] == kScanned || answer[1] == kUnavailable);
        if (!isUsual) {
            text_ += AnswerLine(exchange);
            return;
        }
        const std::string raw = std::to_string(answer[0]);
        Add("reading ", exchange, (answer[1] == kUnavailable ? " unavailable " : " ") + raw);
        if (answer[2] != 0 || answer[3] != 0)
            Add("states ", exchange, ' ' + HexText(answer[2]) + ' ' + HexText(answer[3]));
    }

    void WriteThresholds(const BmcExchange& exchange) {
        constexpr std::uint8_t kMask = 0x3F;
        const CapturedBytes& answer = exchange.answer;
        const bool isKnown = known_.contains(exchange.data.front());
        const bool isAllZero =
            std::all_of(answer.begin(), answer.end(), [](std::uint8_t byte) { return byte == 0; });
        const bool isUsual = exchange.lun == 0 && answer.size() == 7 && answer[0] <= kMask;
        if (isUsual && isKnown && isAllZero) return;  // what such a BMC answers anyway
        if (!isUsual) {
            // It refuses what it does not know.
            if (exchange.lun != 0 || isKnown || !answer.empty()) text_ += AnswerLine(exchange);
            return;
        }
        std::string values = ' ' + HexText(answer[0]);
        for (std::size_t i = 1; i < answer.size(); ++i) values += ' ' + std::to_string(answer[i]);
        Add("thresholds ", exchange, values);
    }

    const BmcCapture& bmc_;
    std::set<int> known_;
    std::string text_;
};

}  // namespace

std::string BmcStatements(const BmcCapture& bmc) {
    return Statements(bmc).Write();
}

}  // namespace tool
