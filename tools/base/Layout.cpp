// SPDX-License-Identifier: MIT
//
// Pads cells to the width of their column and joins lines, blocks and sections.

#include "tools/base/Layout.h"

#include <algorithm>
#include <cstring>

#include "tools/base/Terminal.h"
#include "tools/base/Text.h"
#include "tools/base/Wrapping.h"

namespace tool {
namespace {

constexpr const char* kIndent = "  ";
constexpr const char* kGap = "  ";  // between columns
constexpr std::size_t kNarrowestNote = 20;

Cell Shown(const Cell& cell) {
    const std::string printable = Printable(cell.text);
    return {printable.empty() ? "-" : printable, cell.tone};
}

// The text in its colour (ECMA-48, 8.3.117).
std::string Toned(const std::string& text, Tone tone) {
    if (text.empty() || tone == Tone::kPlain || !CurrentLook().isColored) return text;
    constexpr const char* kColors[] = {"", "\x1B[32m", "\x1B[33m", "\x1B[1;31m", "\x1B[35m"};
    return kColors[static_cast<std::size_t>(tone)] + text + "\x1B[0m";
}

using Widths = std::vector<ColumnWidth>;

Widths WidthsOf(const std::vector<Row>& rows, const std::vector<Column>& columns) {
    Widths widths(columns.size());
    for (const Row& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) {
            const bool isKept = i == 0 || columns[i].align == Column::Align::kRight;
            const std::size_t width = Columns(row[i].text);
            const std::size_t narrowest = isKept ? width : LongestWord(row[i].text);
            widths[i].width = std::max(widths[i].width, width);
            widths[i].narrowest = std::max(widths[i].narrowest, narrowest);
        }
    return widths;
}

// Makes the columns fit the look's width; returns whether they do.
bool Fit(Widths& widths) {
    const std::size_t width = CurrentLook().width;
    const std::size_t between = std::strlen(kIndent) + (widths.size() - 1) * std::strlen(kGap);
    return width == 0 || FitColumns(widths, width > between ? width - between : 0);
}

// One line of the output: from each cell the line of that number, if it has so many.
std::string Line(const std::vector<std::vector<std::string>>& cells, std::size_t number,
                 const Row& row, const Widths& widths, const std::vector<Column>& columns) {
    std::string line = kIndent;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string text = number < cells[i].size() ? cells[i][number] : "";
        const std::size_t columnsOfText = std::min(Columns(text), widths[i].width);
        const std::string padding(widths[i].width - columnsOfText, ' ');
        const std::string toned = Toned(text, row[i].tone);
        if (i != 0) line += kGap;
        line += columns[i].align == Column::Align::kRight ? padding + toned : toned + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

std::string RowLines(const Row& row, const Widths& widths, const std::vector<Column>& columns) {
    std::vector<std::vector<std::string>> cells;
    std::size_t count = 1;
    for (std::size_t i = 0; i < row.size(); ++i) {
        cells.push_back(WrappedLines(row[i].text, widths[i].width));
        count = std::max(count, cells.back().size());
    }
    std::string lines;
    for (std::size_t number = 0; number < count; ++number)
        lines += Line(cells, number, row, widths, columns);
    return lines;
}

std::string Lines(const std::vector<Row>& rows, const Widths& widths,
                  const std::vector<Column>& columns) {
    std::string lines;
    for (const Row& row : rows) lines += RowLines(row, widths, columns);
    return lines;
}

std::vector<Row> Shown(const std::vector<Row>& rows) {
    std::vector<Row> shown;
    for (const Row& row : rows) {
        shown.emplace_back();
        for (const Cell& cell : row) shown.back().push_back(Shown(cell));
    }
    return shown;
}

// A title and a value in each line.
std::string Pairs(const std::vector<Row>& pairs) {
    const std::vector<Column> columns(2);
    const std::vector<Row> rows = Shown(pairs);
    Widths widths = WidthsOf(rows, columns);
    (void)Fit(widths);  // result not used: there is no narrower way
    return Lines(rows, widths, columns);
}

std::string Joined(const std::vector<std::string>& parts) {
    std::string joined;
    for (const std::string& part : parts) joined += joined.empty() ? part : '\n' + part;
    return joined;
}

std::string RowByRow(const std::vector<Column>& columns, const std::vector<Row>& rows) {
    std::vector<std::string> blocks;
    for (const Row& row : rows) {
        std::vector<Row> pairs;
        for (std::size_t i = 0; i < row.size(); ++i) pairs.push_back({columns[i].title, row[i]});
        blocks.push_back(Pairs(pairs));
    }
    return Joined(blocks);
}

}  // namespace

std::string FactBlock(const std::vector<Fact>& facts) {
    std::vector<Row> rows;
    for (const Fact& fact : facts) rows.push_back({fact.name, fact.value});
    return Pairs(rows);
}

std::string TableBlock(const std::vector<Column>& columns, const std::vector<Row>& rows) {
    if (rows.empty()) return NoteBlock("none");
    std::vector<Row> all(1);
    for (const Column& column : columns) all.front().emplace_back(column.title);
    all.insert(all.end(), rows.begin(), rows.end());
    all = Shown(all);
    Widths widths = WidthsOf(all, columns);
    return Fit(widths) ? Lines(all, widths, columns) : RowByRow(columns, rows);
}

std::string NoteBlock(const std::string& note) {
    const std::string printable = Printable(note);
    const std::size_t width = CurrentLook().width;
    if (width == 0) return kIndent + printable + '\n';
    std::string lines;
    for (const std::string& line :
         WrappedLines(printable, std::max(width, kNarrowestNote) - std::strlen(kIndent)))
        lines += kIndent + line + '\n';
    return lines;
}

std::string Section(const Cell& title, const std::vector<std::string>& blocks) {
    return Toned(title.text, title.tone) + '\n' + std::string(Columns(title.text), '-') + '\n' +
           Joined(blocks);
}

std::string Page(const std::vector<std::string>& sections) {
    return Joined(sections);
}

}  // namespace tool
