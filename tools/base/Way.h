// SPDX-License-Identifier: MIT
//
// The way in which an area of this machine is read.
#ifndef TALVANE_TOOLS_BASE_WAY_H
#define TALVANE_TOOLS_BASE_WAY_H

#include <string>

namespace tool {

struct Way {
    std::string area;     // "smbios", "bmc", "pci", "drives" or "load"
    bool isDirect;        // through the devices that agents know, else through other interfaces
    std::string from;     // the file or folder that is read, or was to be read
    std::string note;     // what is different from the machine itself; empty: nothing
    std::string problem;  // why nothing can be read; empty: it can
    // The disks that cannot be opened, separated by commas, and why; empty: all can be.
    std::string unopened = {};
    std::string whyUnopened = {};
};

}  // namespace tool

#endif
