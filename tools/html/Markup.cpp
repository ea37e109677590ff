// SPDX-License-Identifier: MIT
//
// Puts texts into elements.

#include "tools/html/Markup.h"

#include "tools/html/Escape.h"

namespace tool {
namespace {

const char* SignOf(Tone tone) {
    switch (tone) {
        case Tone::kGood:
            return "✓";
        case Tone::kWarning:
            return "▲";
        case Tone::kBad:
            return "✖";
        case Tone::kUnknown:
            return "?";
        case Tone::kPlain:
            break;
    }
    return "";
}

std::string CellMarkup(const Cell& cell) {
    return cell.tone == Tone::kPlain ? EscapedOrDash(cell.text) : HtmlMark(cell.text, cell.tone);
}

const char* AlignClass(const Column& column) {
    return column.align == Column::Align::kRight ? " class=\"number\"" : "";
}

std::string HtmlRow(const Row& row, const std::vector<Column>& columns) {
    std::string markup = "<tr>";
    for (std::size_t i = 0; i < row.size(); ++i) {
        const bool isHeading = i == 0;
        markup += isHeading ? "<th scope=\"row\"" : "<td";
        markup += AlignClass(columns[i]);
        markup += '>' + CellMarkup(row[i]) + (isHeading ? "</th>" : "</td>");
    }
    return markup + "</tr>\n";
}

}  // namespace

const char* ToneClass(Tone tone) {
    constexpr const char* kClasses[] = {"plain", "good", "warning", "bad", "unknown"};
    return kClasses[static_cast<std::size_t>(tone)];
}

std::string HtmlMark(const std::string& word, Tone tone) {
    return std::string("<span class=\"mark ") + ToneClass(tone) + "\"><span aria-hidden=\"true\">" +
           SignOf(tone) + "</span> " + Escaped(word) + "</span>";
}

std::string HtmlTable(const std::string& caption, const std::vector<Column>& columns,
                      const std::vector<Row>& rows) {
    constexpr std::size_t kFewColumns = 3;  // fit a telephone
    if (rows.empty()) return "<p class=\"note\">" + Escaped(caption) + ": none.</p>\n";
    std::string markup = "<div class=\"wide\" tabindex=\"0\" role=\"group\" aria-label=\"" +
                         Escaped(caption) + "\">\n<table" +
                         (columns.size() > kFewColumns ? " class=\"many\"" : "") + ">\n<caption>" +
                         Escaped(caption) + "</caption>\n<thead><tr>";
    for (const Column& column : columns)
        markup += std::string("<th scope=\"col\"") + AlignClass(column) + '>' +
                  Escaped(column.title) + "</th>";
    markup += "</tr></thead>\n<tbody>\n";
    for (const Row& row : rows) markup += HtmlRow(row, columns);
    return markup + "</tbody>\n</table>\n</div>\n";
}

std::string HtmlFacts(const std::vector<Fact>& facts) {
    std::string markup = "<dl class=\"facts\">\n";
    for (const Fact& fact : facts) {
        const std::string value = Escaped(fact.value);
        if (value.empty()) continue;
        markup += "<div><dt>" + Escaped(fact.name) + "</dt><dd>" + value + "</dd></div>\n";
    }
    return markup + "</dl>\n";
}

std::string HtmlNote(const std::string& note) {
    return "<p class=\"note\">" + Escaped(note) + "</p>\n";
}

std::string HtmlOf(const HtmlSection& section) {
    return "<section id=\"" + section.id + "\" aria-labelledby=\"" + section.id +
           "-title\">\n<h2 id=\"" + section.id + "-title\">" + Escaped(section.title) + "</h2>\n" +
           section.markup + "</section>\n";
}

}  // namespace tool
