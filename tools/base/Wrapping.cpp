// SPDX-License-Identifier: MIT
//
// Breaks texts at blanks, and takes columns from the widest.

#include "tools/base/Wrapping.h"

#include <algorithm>
#include <numeric>

#include "tools/base/Text.h"

namespace tool {
namespace {

// The length in bytes of the first `columns` characters.
std::size_t BytesOf(std::string_view printable, std::size_t columns) {
    std::size_t at = 0;
    while (at < printable.size() && Columns(printable.substr(0, at + 1)) <= columns) ++at;
    return at;
}

}  // namespace

std::vector<std::string> WrappedLines(std::string_view printable, std::size_t width) {
    std::vector<std::string> lines;
    while (Columns(printable) > width) {
        const std::size_t fits = BytesOf(printable, width);
        // The blank after the last character that fits ends the line as well.
        const std::size_t blank = printable.substr(0, fits + 1).rfind(' ');
        const bool hasBlank = blank != std::string_view::npos && blank != 0;
        lines.emplace_back(Trimmed(printable.substr(0, hasBlank ? blank : fits)));
        printable = Trimmed(printable.substr(hasBlank ? blank + 1 : fits));
    }
    lines.emplace_back(printable);
    return lines;
}

std::size_t LongestWord(std::string_view printable) {
    constexpr std::size_t kMaxUncut = 24;
    std::size_t longest = 0;
    while (!printable.empty()) {
        const std::size_t end = std::min(printable.find(' '), printable.size());
        longest = std::max(longest, Columns(printable.substr(0, end)));
        printable.remove_prefix(std::min(end + 1, printable.size()));
    }
    return std::min(longest, kMaxUncut);
}

bool FitColumns(std::vector<ColumnWidth>& columns, std::size_t limit) {
    std::size_t total = std::accumulate(
        columns.begin(), columns.end(), std::size_t{0},
        [](std::size_t sum, const ColumnWidth& column) { return sum + column.width; });
    const auto sparable = [](const ColumnWidth& column) {
        return column.width <= column.narrowest ? 0 : column.width;
    };
    for (; total > limit; --total) {
        const auto widest = std::max_element(columns.begin(), columns.end(),
                                             [&](const ColumnWidth& one, const ColumnWidth& other) {
                                                 return sparable(one) < sparable(other);
                                             });
        if (widest == columns.end() || sparable(*widest) == 0) return false;
        --widest->width;
    }
    return true;
}

}  // namespace tool
