// SPDX-License-Identifier: MIT
//
// What the command line can set for reading records.
#ifndef TALVANE_TOOLS_BASE_SETTINGS_H
#define TALVANE_TOOLS_BASE_SETTINGS_H

namespace tool {

struct Settings {
    int loadInterval = 1;         // seconds
    bool libraryRecords = false;  // show sensors as agents see them
};

}  // namespace tool

#endif
