// SPDX-License-Identifier: MIT
//
// Statements of machine files about a captured BMC, and the words that all statements share.
#ifndef TALVANE_TOOLS_CAPTURE_BMCSTATEMENTS_H
#define TALVANE_TOOLS_CAPTURE_BMCSTATEMENTS_H

#include <string>
#include <string_view>

#include "tools/capture/MachineCapture.h"

namespace tool {

// With the lines "sdr sdr.bin" and "inventory fru.bin" where the BMC has these.
std::string BmcStatements(const BmcCapture& bmc);

// In double quotes, with escapes. A byte 00, which no text can have, becomes a blank.
std::string QuotedText(std::string_view text);

// The word of an errno with which opening a device can fail; "EIO" for all others.
std::string OpenErrorName(int error);

}  // namespace tool

#endif
