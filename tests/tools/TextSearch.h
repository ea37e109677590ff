// SPDX-License-Identifier: MIT
//
// Whether what the tool shows has a text in it.
#ifndef TALVANE_TESTS_TOOLS_TEXTSEARCH_H
#define TALVANE_TESTS_TOOLS_TEXTSEARCH_H

#include <string>

namespace tool {

inline bool Shows(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

}  // namespace tool

#endif
