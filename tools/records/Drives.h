// SPDX-License-Identifier: MIT
//
// The IDE disks.
#ifndef TALVANE_TOOLS_RECORDS_DRIVES_H
#define TALVANE_TOOLS_RECORDS_DRIVES_H

#include <optional>
#include <string>
#include <vector>

#include "tools/Json.h"

namespace tool {

struct Drive {
    std::string controller;  // "ide"
    std::string position;    // "Primary Master" to "Secondry Slave"
    std::string model;
    std::string size;          // bytes, decimal
    std::string serialNumber;  // as the library copies it: on into the fields behind
};

using Drives = std::vector<Drive>;

// Nothing when the source cannot be read. A machine without IDE has no drives.
std::optional<Drives> ReadDrives();

// The first 20 characters, which are all that the identity block has for it (ATA-5, 8.12.8).
std::string SerialText(const Drive& drive);

// "/dev/hda" to "/dev/hdd"; empty for a drive at another position.
std::string DevicePath(const Drive& drive);

std::string ToText(const Drives& drives);
Json ToJson(const Drives& drives);

}  // namespace tool

#endif
