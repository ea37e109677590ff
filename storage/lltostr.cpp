// SPDX-License-Identifier: MIT
//
// Decimal digits of a 64-bit number, highest first, and the end of a line.

#include "storage/lltostr.h"

#include <cstring>

void lltostr(char* out, unsigned long long value) {
    constexpr unsigned long long kHighestPower = 100'000'000'000;
    const char* const begin = out;
    for (unsigned long long power = kHighestPower; power != 0; power /= 10) {
        const unsigned long long digit = value / power;
        value %= power;
        if (digit != 0 || out != begin) *out++ = static_cast<char>('0' + digit);
    }
    *out = '\0';
}

void stripret(char* s) {
    const std::size_t length = std::strlen(s);
    if (length != 0 && s[length - 1] == '\n') s[length - 1] = '\0';
}
