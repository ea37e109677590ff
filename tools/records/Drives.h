// SPDX-License-Identifier: MIT
//
// The record of the IDE disks.
#ifndef TALVANE_TOOLS_RECORDS_DRIVES_H
#define TALVANE_TOOLS_RECORDS_DRIVES_H

#include <string>

#include "tools/base/Json.h"
#include "tools/library/IdeDrives.h"

namespace tool {

// The first 20 characters, which are all that the identity block has for it (ATA-5, 8.12.8).
std::string SerialText(const Drive& drive);

std::string ToText(const Drives& drives);
Json ToJson(const Drives& drives);

}  // namespace tool

#endif
