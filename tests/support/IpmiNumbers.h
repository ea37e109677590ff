// SPDX-License-Identifier: MIT
//
// Tables of what the IPMI headers say and what agents were compiled with, compared by the compiler.
#ifndef TALVANE_TESTS_SUPPORT_IPMINUMBERS_H
#define TALVANE_TESTS_SUPPORT_IPMINUMBERS_H

#include <cstddef>

struct Same {
    std::size_t is;
    std::size_t expected;
};

template <std::size_t Size>
constexpr bool AllSame(const Same (&rows)[Size]) {
    for (const Same& row : rows)
        if (row.is != row.expected) return false;
    return true;
}

#endif
