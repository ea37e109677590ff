// SPDX-License-Identifier: MIT
//
// One line of a machine description, taken apart word by word. Every complaint becomes a
// MachineError that starts with FILE:LINE.
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
    // \xHH; what follows # outside of it is a comment.
    MachineLine(std::string file, int number, std::string_view text);

    int LineNumber() const { return number_; }
    bool HasMore() const { return next_ < words_.size(); }

    // The next word, which must be there; `what` names it in the complaint.
    std::string TakeWord(const char* what);
    std::string TakeText(const char* what);  // in quotes, not empty
    std::string TakeName(const char* what);  // in quotes or without
    std::uint32_t TakeNumber(const char* what,
                             std::uint32_t max);  // decimal, or hexadecimal with 0x
    std::uint8_t TakeByte(const char* what, std::uint8_t max = 0xFF);  // the same, of 8 bits
    int TakeInteger(const char* what, int min, int max);               // decimal, may be negative
    std::uint64_t TakeSize(const char* what,
                           std::uint64_t max);   // a number with K, M or G behind it
    std::uint8_t TakeHexByte(const char* what);  // one or two hexadecimal digits

    // The next word is this one.
    void ExpectWord(std::string_view literal);

    // Takes the next word when it is this one.
    bool TakeIf(std::string_view literal);

    // Whether the next word is quoted.
    bool IsNextQuoted() const { return HasMore() && words_[next_].quoted; }

    // The statement ends here.
    void ExpectEnd() const;

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
