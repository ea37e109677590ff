// SPDX-License-Identifier: MIT
//
// Tables that give a code its name, and their lookup. The texts are part of the interface and
// spelled as agents know them. A table stands directly above its only decoder, its rows in the
// order of their codes.
#ifndef TALVANE_BASE_CODENAME_H
#define TALVANE_BASE_CODENAME_H

#include <cstddef>

namespace talvane {

struct CodeName {
    unsigned code;
    const char* name;
};

// The name of a code, or `fallback` when the table has none. Linear on purpose: the longest table
// has under 100 rows.
template <std::size_t N>
constexpr const char* NameOf(const CodeName (&table)[N], unsigned code, const char* fallback) {
    for (const CodeName& row : table)
        if (row.code == code) return row.name;
    return fallback;
}

// Whether the rows are in the order of their codes, and no code stands twice.
template <std::size_t N>
consteval bool StrictlyAscending(const CodeName (&table)[N]) {
    for (std::size_t i = 1; i < N; ++i)
        if (table[i - 1].code >= table[i].code) return false;
    return true;
}

}  // namespace talvane

#endif
