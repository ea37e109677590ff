// SPDX-License-Identifier: MIT
//
// The checks of text and JSON.

#include "fuzz/output/Texts.h"

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string_view>

#include "tools/base/Text.h"

namespace fuzz {

void ExpectPrintable(const std::string& text) {
    for (std::string_view rest = text; !rest.empty();) {
        std::uint32_t codePoint = 0;
        const std::size_t length = tool::SequenceLength(rest, codePoint);
        const bool isControl = codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0);
        if (length == 0 || (isControl && codePoint != '\n')) std::abort();
        rest.remove_prefix(length);
    }
}

void ExpectWritable(const tool::Json& json) {
    constexpr int kIndent = 2;
    constexpr bool kAsciiOnly = true;
    const std::string text = json.dump(kIndent, ' ', kAsciiOnly);
    for (const char byte : text)
        if ((byte < ' ' && byte != '\n') || byte == '\x7F') std::abort();
    if (tool::Json::parse(text) != json) std::abort();
}

}  // namespace fuzz
