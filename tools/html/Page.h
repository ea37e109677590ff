// SPDX-License-Identifier: MIT
//
// The whole page.
#ifndef TALVANE_TOOLS_HTML_PAGE_H
#define TALVANE_TOOLS_HTML_PAGE_H

#include <string>

#include "tools/html/MachineReport.h"

namespace tool {

// An HTML document with nothing outside it: no script, no other file, no address of the network.
std::string HtmlPage(const MachineReport& report);

}  // namespace tool

#endif
