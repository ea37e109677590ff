// SPDX-License-Identifier: MIT
//
// Sections, tables, facts and marks of a page. Their texts are those of the machine: the functions
// here escape them. What is called markup is put in as it is.
#ifndef TALVANE_TOOLS_HTML_MARKUP_H
#define TALVANE_TOOLS_HTML_MARKUP_H

#include <string>
#include <vector>

#include "tools/base/Layout.h"

namespace tool {

// A part of the page with a heading of its own.
struct HtmlSection {
    std::string id;     // also the target of links
    std::string title;  // a text
    std::string markup;
};

std::string HtmlOf(const HtmlSection& section);

// A table with a caption for those who do not see what is around it. The first cell of a row is its
// heading. The sentence "None." without rows.
std::string HtmlTable(const std::string& caption, const std::vector<Column>& columns,
                      const std::vector<Row>& rows);

// Names with their values, without those that are empty.
std::string HtmlFacts(const std::vector<Fact>& facts);

std::string HtmlNote(const std::string& note);

// The word in the colours of its tone, with a sign before it, so that no one needs the colours.
std::string HtmlMark(const std::string& word, Tone tone);

// The tone's name as a class: "good", "warning", "bad", "unknown", "plain".
const char* ToneClass(Tone tone);

}  // namespace tool

#endif
