// SPDX-License-Identifier: MIT
//
// The look of the text output: titled sections of indented blocks, with a blank line between
// blocks. No line ends in a blank.
//
// Cells hold texts as the firmware gave them. The functions here make them printable, and show an
// empty cell as "-".
#ifndef TALVANE_TOOLS_BASE_LAYOUT_H
#define TALVANE_TOOLS_BASE_LAYOUT_H

#include <string>
#include <vector>

namespace tool {

struct Fact {
    std::string name;
    std::string value;
};

struct Column {
    std::string title;
    enum class Align { kLeft, kRight } align = Align::kLeft;
};

using Row = std::vector<std::string>;  // one cell per column

// One line per fact, with all values in one column.
std::string FactBlock(const std::vector<Fact>& facts);

// A line of titles and one line per row; the word "none" when there is no row.
std::string TableBlock(const std::vector<Column>& columns, const std::vector<Row>& rows);

// One line of prose.
std::string NoteBlock(const std::string& note);

// A title, underlined, and its blocks.
std::string Section(const std::string& title, const std::vector<std::string>& blocks);

// All sections, with a blank line between them.
std::string Page(const std::vector<std::string>& sections);

}  // namespace tool

#endif
