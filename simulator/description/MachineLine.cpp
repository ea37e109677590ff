// SPDX-License-Identifier: MIT
//
// Splits a line of a machine description into words, and reads words as texts and numbers.

#include "simulator/description/MachineLine.h"

#include <algorithm>
#include <charconv>

#include "simulator/description/MachineError.h"

namespace sim {
namespace {

constexpr std::string_view kBlanks = " \t\r";

bool IsBlank(char c) {
    return kBlanks.find(c) != std::string_view::npos;
}

}  // namespace

MachineLine::MachineLine(std::string file, int number, std::string_view text)
    : file_(std::move(file)), number_(number) {
    if (text.find('\0') != std::string_view::npos)
        Fail("the line holds a byte 00, so it is not text");
    std::size_t at = 0;
    while (true) {
        at = text.find_first_not_of(kBlanks, at);
        if (at == std::string_view::npos || text[at] == '#') return;
        if (text[at] == '"') {
            at = TakeQuoted(text, at + 1);
            if (at < text.size() && !IsBlank(text[at]) && text[at] != '#')
                Fail("a blank must follow the closing quote");
        } else {
            const std::size_t end = std::min(text.find_first_of(" \t\r#", at), text.size());
            const std::string_view word = text.substr(at, end - at);
            if (word.find('"') != std::string_view::npos)
                Fail("a blank must precede the opening quote");
            words_.push_back({std::string(word), false});
            at = end;
        }
    }
}

// Takes the text after the opening quote, which ends before `at`. Returns the place after the
// closing quote.
std::size_t MachineLine::TakeQuoted(std::string_view text, std::size_t at) {
    std::string result;
    while (true) {
        if (at >= text.size()) Fail("the text has no closing quote");
        const char c = text[at++];
        if (c == '"') break;
        if (c != '\\') {
            result += c;
            continue;
        }
        const char escape = at < text.size() ? text[at++] : '\0';
        if (escape == '"' || escape == '\\') {
            result += escape;
        } else if (escape == 'x') {
            unsigned value = 0;
            const char* const digits = text.data() + at;
            const char* const end = digits + std::min<std::size_t>(2, text.size() - at);
            const auto [stop, error] = std::from_chars(digits, end, value, 16);
            if (error != std::errc() || stop != digits + 2 || value == 0)
                Fail("\\x needs two hexadecimal digits other than 00");
            result += static_cast<char>(value);
            at += 2;
        } else {
            Fail("the escapes of a text are \\\" \\\\ and \\xHH");
        }
    }
    words_.push_back({std::move(result), true});
    return at;
}

void MachineLine::Fail(const std::string& message) const {
    throw MachineError(file_ + ":" + std::to_string(number_) + ": " + message);
}

const MachineLine::Token& MachineLine::TakeToken(const char* what) {
    if (!HasMore()) Fail(std::string(what) + " is missing");
    return words_[next_++];
}

std::string MachineLine::TakeWord(const char* what) {
    const Token& word = TakeToken(what);
    if (word.quoted) Fail(std::string(what) + " takes no quotes");
    return word.text;
}

std::string MachineLine::TakeText(const char* what) {
    const Token& word = TakeToken(what);
    if (!word.quoted) Fail(std::string(what) + " must be in double quotes");
    if (word.text.empty()) Fail(std::string(what) + " is empty");
    return word.text;
}

std::string MachineLine::TakeName(const char* what) {
    return IsNextQuoted() ? TakeText(what) : TakeWord(what);
}

std::uint64_t MachineLine::ParseNumber(const std::string& digits, const char* what) const {
    const bool hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    const char* const begin = digits.data() + (hexadecimal ? 2 : 0);
    const char* const end = digits.data() + digits.size();
    std::uint64_t value = 0;
    const auto [stop, error] = std::from_chars(begin, end, value, hexadecimal ? 16 : 10);
    if (stop != end || error == std::errc::invalid_argument)
        Fail(std::string(what) + " \"" + digits + "\" is not a number");
    if (error == std::errc::result_out_of_range)
        Fail(std::string(what) + " " + digits + " is too large");
    return value;
}

std::uint32_t MachineLine::TakeNumber(const char* what, std::uint32_t max) {
    const std::string digits = TakeWord(what);
    const std::uint64_t value = ParseNumber(digits, what);
    if (value > max) Fail(std::string(what) + " " + digits + " is above " + std::to_string(max));
    return static_cast<std::uint32_t>(value);
}

std::uint8_t MachineLine::TakeByte(const char* what, std::uint8_t max) {
    return static_cast<std::uint8_t>(TakeNumber(what, max));
}

int MachineLine::TakeInteger(const char* what, int min, int max) {
    const std::string text = TakeWord(what);
    int value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end)
        Fail(std::string(what) + " \"" + text + "\" is not a decimal number");
    if (value < min || value > max)
        Fail(std::string(what) + " " + text + " is not between " + std::to_string(min) + " and " +
             std::to_string(max));
    return value;
}

std::uint64_t MachineLine::TakeSize(const char* what, std::uint64_t max) {
    std::string digits = TakeWord(what);
    const std::string given = digits;
    unsigned shift = 0;
    switch (digits.back()) {
        case 'K':
            shift = 10;
            break;
        case 'M':
            shift = 20;
            break;
        case 'G':
            shift = 30;
            break;
        default:
            break;
    }
    if (shift != 0) digits.pop_back();
    const std::uint64_t value = ParseNumber(digits, what);
    if (value == 0 || value > max >> shift)
        Fail(std::string(what) + " " + given + " is not between 1 and " + std::to_string(max));
    return value << shift;
}

std::uint8_t MachineLine::TakeHexByte(const char* what) {
    const std::string digits = TakeWord(what);
    unsigned value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    if (error != std::errc() || stop != end || digits.size() > 2)
        Fail(std::string(what) + " \"" + digits + "\" is not two hexadecimal digits");
    return static_cast<std::uint8_t>(value);
}

void MachineLine::ExpectWord(std::string_view literal) {
    const std::string what = "the word \"" + std::string(literal) + "\"";
    const std::string found = TakeWord(what.c_str());
    if (found != literal) Fail(what + " was expected, not \"" + found + "\"");
}

bool MachineLine::TakeIf(std::string_view literal) {
    if (!HasMore() || words_[next_].quoted || words_[next_].text != literal) return false;
    ++next_;
    return true;
}

void MachineLine::ExpectEnd() const {
    if (HasMore()) Fail("nothing may follow here, but \"" + words_[next_].text + "\" does");
}

}  // namespace sim
