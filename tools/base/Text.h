// SPDX-License-Identifier: MIT
//
// Texts that came from firmware. Their bytes can be anything: a field that is filled to its last
// byte is not NUL-terminated, old tables hold Latin-1 or noise, and a bounded copy can end inside a
// UTF-8 sequence.
#ifndef TALVANE_TOOLS_BASE_TEXT_H
#define TALVANE_TOOLS_BASE_TEXT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

// The text of bytes [from, to) of a record, up to its terminator if it has one.
template <class Record>
std::string TextWithin(const Record& record, std::size_t from, std::size_t to) {
    const std::string_view bytes(reinterpret_cast<const char*>(&record) + from, to - from);
    return std::string(bytes.substr(0, bytes.find('\0')));
}

// The text of one field; never reads past it.
template <std::size_t N>
std::string FieldText(const char (&field)[N]) {
    return TextWithin(field, 0, N);
}

// The text without these characters before and after it.
std::string_view Trimmed(std::string_view text, std::string_view blanks = " ");

// How many characters at the start of "3.30V" or "-5 degree C" belong to its number.
std::size_t NumberLength(std::string_view text);

// "0x0A".
std::string HexText(unsigned code);

struct CodePointRange {
    std::uint32_t first, last;
    bool Contains(std::uint32_t codePoint) const { return first <= codePoint && codePoint <= last; }
};

// The length in bytes of the UTF-8 sequence at the front of `text`. 0 when there is none: for a
// stray or missing continuation byte, an overlong form, a surrogate, or a value above U+10FFFF.
// REQUIRES: text is not empty.
std::size_t SequenceLength(std::string_view text, std::uint32_t& codePoint);

// Each byte as \xHH.
std::string ByteText(std::string_view bytes);

// The text without surrounding blanks, each character replaced. `replace` gets a whole UTF-8
// sequence with its code point; or one byte that belongs to none, without a code point.
template <class Replace>
std::string ReplaceCharacters(std::string_view text, Replace replace) {
    std::string out;
    text = Trimmed(text);
    while (!text.empty()) {
        std::uint32_t codePoint = 0;
        const std::size_t length = SequenceLength(text, codePoint);
        const std::string_view piece = text.substr(0, length != 0 ? length : 1);
        out += replace(piece, length != 0 ? std::optional(codePoint) : std::nullopt);
        text.remove_prefix(piece.size());
    }
    return out;
}

// For a terminal: the text without surrounding blanks. Letters and signs that take one column stay
// as they are. Every other byte (controls, broken UTF-8, characters of unclear width) becomes \xHH.
std::string Printable(std::string_view text);

// Columns that a printable text takes.
std::size_t Columns(std::string_view printable);

// For JSON: valid UTF-8. A byte outside a UTF-8 sequence is taken for Latin-1, so that different
// texts stay different.
std::string Utf8(std::string_view text);

}  // namespace tool

#endif
