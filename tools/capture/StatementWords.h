// SPDX-License-Identifier: MIT
//
// Words that statements of machine files have in common.
#ifndef TALVANE_TOOLS_CAPTURE_STATEMENTWORDS_H
#define TALVANE_TOOLS_CAPTURE_STATEMENTWORDS_H

#include <string>
#include <string_view>

namespace tool {

// In double quotes, with escapes. A byte 00, which no text can have, becomes a blank.
std::string QuotedText(std::string_view text);

// The word of an errno with which opening a device can fail; "EIO" for all others.
std::string OpenErrorName(int error);

}  // namespace tool

#endif
