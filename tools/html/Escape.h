// SPDX-License-Identifier: MIT
//
// Texts of the machine as text of a page: whatever bytes they are, they become no markup.
#ifndef TALVANE_TOOLS_HTML_ESCAPE_H
#define TALVANE_TOOLS_HTML_ESCAPE_H

#include <string>
#include <string_view>

namespace tool {

// The text without surrounding blanks, for the content of an element and for an attribute's value
// in quotes. Characters of UTF-8 stay as they are. Markup characters become references. Bytes
// outside UTF-8, controls, and characters that would turn the writing direction become \xHH.
std::string Escaped(std::string_view text);

// The same, "–" for an empty text.
std::string EscapedOrDash(std::string_view text);

}  // namespace tool

#endif
