// SPDX-License-Identifier: MIT
//
// The page's style: for light and dark screens of any width, and for paper.
#ifndef TALVANE_TOOLS_HTML_STYLE_H
#define TALVANE_TOOLS_HTML_STYLE_H

namespace tool {

extern const char* const kHtmlStyle;

}  // namespace tool

#endif
