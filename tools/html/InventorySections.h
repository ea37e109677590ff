// SPDX-License-Identifier: MIT
//
// The sections of what the machine consists of, from board to load.
#ifndef TALVANE_TOOLS_HTML_INVENTORYSECTIONS_H
#define TALVANE_TOOLS_HTML_INVENTORYSECTIONS_H

#include <vector>

#include "tools/html/MachineReport.h"
#include "tools/html/Markup.h"

namespace tool {

// A section for each record that could be read.
std::vector<HtmlSection> FirmwareSections(const MachineReport& report);  // from SMBIOS
std::vector<HtmlSection> DeviceSections(const MachineReport& report);    // from the devices

}  // namespace tool

#endif
