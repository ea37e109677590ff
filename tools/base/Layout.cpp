// SPDX-License-Identifier: MIT
//
// Pads cells to the width of their column and joins lines, blocks and sections.

#include "tools/base/Layout.h"

#include <algorithm>

#include "tools/base/Text.h"

namespace tool {
namespace {

constexpr const char* kIndent = "  ";
constexpr const char* kGap = "  ";  // between columns

std::string Cell(const std::string& text) {
    const std::string printable = Printable(text);
    return printable.empty() ? "-" : printable;
}

std::string Line(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths,
                 const std::vector<Column>& columns) {
    std::string line = kIndent;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string padding(widths[i] - Columns(cells[i]), ' ');
        if (i != 0) line += kGap;
        line += columns[i].align == Column::Align::kRight ? padding + cells[i] : cells[i] + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

std::string Lines(std::vector<Row> rows, const std::vector<Column>& columns) {
    std::vector<std::size_t> widths(columns.size(), 0);
    for (Row& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) {
            row[i] = Cell(row[i]);
            widths[i] = std::max(widths[i], Columns(row[i]));
        }
    std::string lines;
    for (const Row& row : rows) lines += Line(row, widths, columns);
    return lines;
}

std::string Joined(const std::vector<std::string>& parts) {
    std::string joined;
    for (const std::string& part : parts) joined += joined.empty() ? part : '\n' + part;
    return joined;
}

}  // namespace

std::string FactBlock(const std::vector<Fact>& facts) {
    std::vector<Row> rows;
    for (const Fact& fact : facts) rows.push_back({fact.name, fact.value});
    return Lines(rows, {{}, {}});
}

std::string TableBlock(const std::vector<Column>& columns, const std::vector<Row>& rows) {
    if (rows.empty()) return NoteBlock("none");
    std::vector<Row> all(1);
    for (const Column& column : columns) all.front().push_back(column.title);
    all.insert(all.end(), rows.begin(), rows.end());
    return Lines(all, columns);
}

std::string NoteBlock(const std::string& note) {
    return kIndent + Printable(note) + '\n';
}

std::string Section(const std::string& title, const std::vector<std::string>& blocks) {
    return title + '\n' + std::string(Columns(title), '-') + '\n' + Joined(blocks);
}

std::string Page(const std::vector<std::string>& sections) {
    return Joined(sections);
}

}  // namespace tool
