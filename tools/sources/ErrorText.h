// SPDX-License-Identifier: MIT
//
// What an errno of a device means to the person who runs the tool.
#ifndef TALVANE_TOOLS_SOURCES_ERRORTEXT_H
#define TALVANE_TOOLS_SOURCES_ERRORTEXT_H

#include <string>

namespace tool {

// The system's text with advice in parentheses. `whyAbsent` is the advice for a device that does
// not exist.
std::string ErrorText(int error, const char* whyAbsent);

}  // namespace tool

#endif
