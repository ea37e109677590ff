// SPDX-License-Identifier: MIT
//
// Statements of machine files about a captured BMC.
#ifndef TALVANE_TOOLS_CAPTURE_BMCSTATEMENTS_H
#define TALVANE_TOOLS_CAPTURE_BMCSTATEMENTS_H

#include <string>

#include "tools/capture/MachineCapture.h"

namespace tool {

// With the lines "sdr sdr.bin" and "inventory fru.bin" where the BMC has these.
std::string BmcStatements(const BmcCapture& bmc);

}  // namespace tool

#endif
