// SPDX-License-Identifier: MIT
//
// Makes texts and tables fit a width, without losing a character.
#ifndef TALVANE_TOOLS_BASE_WRAPPING_H
#define TALVANE_TOOLS_BASE_WRAPPING_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

// A printable text in lines of at most `width` columns, at least one. Lines end at blanks; a word
// that is longer than a line is cut. REQUIRES: width is not 0.
std::vector<std::string> WrappedLines(std::string_view printable, std::size_t width);

// The longest word of a printable text, in columns; at most 24, as longer words may be cut.
std::size_t LongestWord(std::string_view printable);

struct ColumnWidth {
    std::size_t width;
    std::size_t narrowest;  // not more than the width
};

// Makes the widest columns narrower, none more than it can be, until the sum of all is at most
// `limit`. Returns whether they fit.
bool FitColumns(std::vector<ColumnWidth>& columns, std::size_t limit);

}  // namespace tool

#endif
