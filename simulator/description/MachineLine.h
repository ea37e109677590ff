// SPDX-License-Identifier: MIT
//
// One line of a machine description, read word by word. Every mistake throws a MachineError whose
// text starts with FILE:LINE.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_MACHINELINE_H
#define TALVANE_SIMULATOR_DESCRIPTION_MACHINELINE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

class MachineLine {
public:
    // Splits the line at blanks. Text in double quotes is one word, with the escapes \" \\ and
    // \xHH. A # outside of quotes starts a comment.
    MachineLine(std::string file, int number, std::string_view text);

    int LineNumber() const { return number_; }
    bool HasMore() const { return next_ < words_.size(); }

    // Take the next word off the line, which must have one; `what` names it in the error.
    std::string TakeWord(const char* what);
    std::string TakeText(const char* what);  // in quotes, not empty
    std::string TakeName(const char* what);  // in quotes or without
    std::uint32_t TakeNumber(const char* what,
                             std::uint32_t max);  // decimal, or hexadecimal with 0x
    std::uint8_t TakeByte(const char* what, std::uint8_t max = 0xFF);  // the same, up to 8 bits
    int TakeInteger(const char* what, int min, int max);               // decimal, may be negative
    std::uint64_t TakeSize(const char* what,
                           std::uint64_t max);   // a number followed by K, M, G or nothing
    std::uint8_t TakeHexByte(const char* what);  // one or two hexadecimal digits

    // Takes the next word, which must be this one.
    void ExpectWord(std::string_view literal);

    // Takes the next word if it is this one. Returns whether it was.
    bool TakeIf(std::string_view literal);

    // Whether the next word is quoted.
    bool IsNextQuoted() const { return HasMore() && words_[next_].quoted; }

    // Fails when the line has another word.
    void ExpectEnd() const;

    // Throws the error about this line.
    [[noreturn]] void Fail(const std::string& message) const;

private:
    struct Token {
        std::string text;
        bool quoted;
    };
    const Token& TakeToken(const char* what);
    std::size_t TakeQuoted(std::string_view text, std::size_t at);
    std::uint64_t ParseNumber(const std::string& digits, const char* what) const;

    std::string file_;
    int number_;
    std::vector<Token> words_;
    std::size_t next_ = 0;
};

}  // namespace sim

#endif
