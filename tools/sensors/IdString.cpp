// SPDX-License-Identifier: MIT
//
// The four encodings of a name.

#include "tools/sensors/IdString.h"

#include <algorithm>

#include "tools/base/Text.h"

namespace tool {
namespace {

using talvane::ByteAt;
using talvane::ByteView;

enum class IdEncoding { kUnicode = 0, kBcdPlus = 1, kSixBit = 2, kLatin = 3 };

constexpr int kEncodingShift = 6;
constexpr unsigned kIdLengthBits = 0x1F;

std::string BcdPlus(ByteView bytes) {
    constexpr char kDigits[] = "0123456789 -.:,_";
    std::string text;
    for (const unsigned char byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0x0F];
    }
    return text;
}

// Characters of six bits from blank (0) to underscore, the first in the lowest bits.
std::string SixBit(ByteView bytes) {
    std::string text;
    const std::size_t characters = bytes.size() * 8 / 6;
    for (std::size_t i = 0; i < characters; ++i) {
        const std::size_t bit = i * 6;
        const unsigned two = talvane::Le16(bytes, bit / 8);
        text += static_cast<char>(' ' + (two >> bit % 8 & 0x3F));
    }
    return text;
}

std::string PlainBytes(ByteView bytes) {
    return std::string(bytes.begin(), bytes.end());
}

}  // namespace

std::string IdString(ByteView record, std::size_t offset) {
    const unsigned typeLength = ByteAt(record, offset);
    const ByteView rest = record.subspan(std::min(offset + 1, record.size()));
    const ByteView bytes =
        rest.first(std::min<std::size_t>(typeLength & kIdLengthBits, rest.size()));
    std::string text;
    const auto encoding = static_cast<IdEncoding>(typeLength >> kEncodingShift);
    if (encoding == IdEncoding::kBcdPlus)
        text = BcdPlus(bytes);
    else if (encoding == IdEncoding::kSixBit)
        text = SixBit(bytes);
    else
        text = PlainBytes(bytes);
    text.resize(std::min(text.find('\0'), text.size()));
    return std::string(Trimmed(text));
}

}  // namespace tool
