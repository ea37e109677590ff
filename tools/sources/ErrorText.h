// SPDX-License-Identifier: MIT
//
// What an errno of a device means to the one who runs the tool.
#ifndef TALVANE_TOOLS_SOURCES_ERRORTEXT_H
#define TALVANE_TOOLS_SOURCES_ERRORTEXT_H

#include <string>

namespace tool {

// The system's text with advice in parentheses; `whyAbsent` is that for a device that is not there.
std::string ErrorText(int error, const char* whyAbsent);

}  // namespace tool

#endif
