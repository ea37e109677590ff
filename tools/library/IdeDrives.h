// SPDX-License-Identifier: MIT
//
// The IDE disks, as the library lists them.
#ifndef TALVANE_TOOLS_LIBRARY_IDEDRIVES_H
#define TALVANE_TOOLS_LIBRARY_IDEDRIVES_H

#include <optional>
#include <string>
#include <vector>

namespace tool {

struct Drive {
    std::string controller;  // "ide"
    std::string position;    // "Primary Master" to "Secondry Slave"
    std::string model;
    std::string size;          // bytes, decimal
    std::string serialNumber;  // with what the library copies from the fields after it
};

using Drives = std::vector<Drive>;

// Nothing when the source cannot be read, which a kernel without /proc/ide does not offer.
std::optional<Drives> ReadDrives();

// "/dev/hda" to "/dev/hdd"; empty for a drive at another position.
std::string DevicePath(const Drive& drive);

}  // namespace tool

#endif
