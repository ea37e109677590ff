// SPDX-License-Identifier: MIT
//
// The look of the text output: titled sections of indented blocks, with a blank line between
// blocks. No line ends in a blank.
//
// Cells hold texts as the firmware gave them. The functions here make them printable, and show an
// empty cell as "-".
//
// Where the look (Terminal.h) has a width, cells go on in further lines, between words. The first
// column and numbers keep their width. A table that is still too wide shows each row in lines of
// its own.
#ifndef TALVANE_TOOLS_BASE_LAYOUT_H
#define TALVANE_TOOLS_BASE_LAYOUT_H

#include <string>
#include <vector>

namespace tool {

// What a text means for the server; it has a colour on terminals.
enum class Tone { kPlain, kGood, kWarning, kBad, kUnknown };

struct Cell {
    Cell(std::string cellText, Tone cellTone = Tone::kPlain)
        : text(std::move(cellText)), tone(cellTone) {}
    Cell(const char* cellText) : text(cellText) {}

    std::string text;
    Tone tone = Tone::kPlain;
};

struct Fact {
    std::string name;
    std::string value;
};

struct Column {
    std::string title;
    enum class Align { kLeft, kRight } align = Align::kLeft;
};

using Row = std::vector<Cell>;  // one per column

// One line per fact, with all values in one column.
std::string FactBlock(const std::vector<Fact>& facts);

// A line of titles and one line per row; the word "none" when there is no row.
std::string TableBlock(const std::vector<Column>& columns, const std::vector<Row>& rows);

// One line of prose.
std::string NoteBlock(const std::string& note);

// A title, underlined, and its blocks.
std::string Section(const Cell& title, const std::vector<std::string>& blocks);

// All sections, with a blank line between them.
std::string Page(const std::vector<std::string>& sections);

}  // namespace tool

#endif
