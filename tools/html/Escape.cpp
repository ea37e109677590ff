// SPDX-License-Identifier: MIT
//
// Goes through the text character by character.

#include "tools/html/Escape.h"

#include <algorithm>
#include <cstdint>

#include "tools/base/Text.h"

namespace tool {
namespace {

// Neither controls nor marks that change how the text around them reads (Unicode 15, 23.2), nor
// code points that stand for no character.
constexpr CodePointRange kShownAsBytes[] = {
    {0x00, 0x1F},     {0x7F, 0x9F},       {0x061C, 0x061C},    {0x200B, 0x200F}, {0x2028, 0x202E},
    {0x2060, 0x206F}, {0xE000, 0xF8FF},   {0xFDD0, 0xFDEF},    {0xFEFF, 0xFEFF}, {0xFFF0, 0xFFFB},
    {0xFFFE, 0xFFFF}, {0xE0000, 0xE0FFF}, {0xF0000, 0x10FFFF},
};

std::string EscapedCharacter(std::string_view piece, std::optional<std::uint32_t> codePoint) {
    const bool isShown =
        codePoint && std::none_of(std::begin(kShownAsBytes), std::end(kShownAsBytes),
                                  [&](CodePointRange range) { return range.Contains(*codePoint); });
    if (!isShown) return ByteText(piece);
    switch (*codePoint) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        default:
            return std::string(piece);
    }
}

}  // namespace

std::string Escaped(std::string_view text) {
    return ReplaceCharacters(text, EscapedCharacter);
}

std::string EscapedOrDash(std::string_view text) {
    const std::string escaped = Escaped(text);
    return escaped.empty() ? "–" : escaped;
}

}  // namespace tool
