// SPDX-License-Identifier: MIT
//
// Decodes UTF-8 sequence by sequence.

#include "tools/base/Text.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace tool {
namespace {

// What is shown unchanged: characters that are one column wide and neither turn nor join the text.
constexpr CodePointRange kOneColumn[] = {
    {0x20, 0x7E},      // ASCII
    {0xA1, 0xAC},      // Latin-1 signs, up to the soft hyphen
    {0xAE, 0x2FF},     // and from there all Latin letters
    {0x2010, 0x2027},  // dashes, quotation marks, bullets
    {0x20AC, 0x20AC},  // euro
    {0x2122, 0x2122},  // trade mark
};

bool IsOneColumn(std::uint32_t codePoint) {
    return std::any_of(std::begin(kOneColumn), std::end(kOneColumn),
                       [&](CodePointRange range) { return range.Contains(codePoint); });
}

}  // namespace

std::size_t SequenceLength(std::string_view text, std::uint32_t& codePoint) {
    constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};  // by length
    const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(text[at]); };
    const std::uint8_t lead = byte(0);
    const std::size_t length = lead < 0x80             ? 1
                               : (lead & 0xE0) == 0xC0 ? 2
                               : (lead & 0xF0) == 0xE0 ? 3
                               : (lead & 0xF8) == 0xF0 ? 4
                                                       : 0;
    if (length == 0 || length > text.size()) return 0;
    codePoint = length == 1 ? lead : lead & (0x7Fu >> length);
    for (std::size_t at = 1; at < length; ++at) {
        if ((byte(at) & 0xC0) != 0x80) return 0;
        codePoint = codePoint << 6 | (byte(at) & 0x3Fu);
    }
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    return codePoint < kSmallest[length] || surrogate || codePoint > 0x10FFFF ? 0 : length;
}

std::string ByteText(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        char escape[5];
        std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<std::uint8_t>(byte));
        text += escape;
    }
    return text;
}

std::string_view Trimmed(std::string_view text, std::string_view blanks) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

std::size_t NumberLength(std::string_view text) {
    return std::min(text.find_first_not_of("0123456789.-"), text.size());
}

std::string HexText(unsigned code) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%02X", code);
    return text;
}

std::string Printable(std::string_view text) {
    return ReplaceCharacters(
        text, [](std::string_view piece, std::optional<std::uint32_t> codePoint) {
            return codePoint && IsOneColumn(*codePoint) ? std::string(piece) : ByteText(piece);
        });
}

std::size_t Columns(std::string_view printable) {
    return static_cast<std::size_t>(
        std::count_if(printable.begin(), printable.end(),
                      [](char byte) { return (static_cast<std::uint8_t>(byte) & 0xC0) != 0x80; }));
}

std::string Utf8(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        std::uint32_t codePoint = 0;
        const std::size_t sequence = SequenceLength(text, codePoint);
        if (sequence != 0) {
            out += text.substr(0, sequence);
            text.remove_prefix(sequence);
            continue;
        }
        const auto latin1 = static_cast<std::uint8_t>(text.front());
        out += static_cast<char>(0xC0 | latin1 >> 6);
        out += static_cast<char>(0x80 | (latin1 & 0x3F));
        text.remove_prefix(1);
    }
    return out;
}

}  // namespace tool
