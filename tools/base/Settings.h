// SPDX-License-Identifier: MIT
//
// What the command line can set for reading records.
#ifndef TALVANE_TOOLS_BASE_SETTINGS_H
#define TALVANE_TOOLS_BASE_SETTINGS_H

#include <vector>

#include "tools/base/Way.h"

namespace tool {

struct Settings {
    int loadInterval = 1;         // seconds
    bool libraryRecords = false;  // show sensors as agents see them
    std::vector<Way> ways = {};   // of the areas of this machine, or of a captured one
};

}  // namespace tool

#endif
