// SPDX-License-Identifier: MIT
//
// The sources that records come from, and why one could not be read. The library answers a failure
// with -1 and no reason; the tool looks for the reason itself.
#ifndef TALVANE_TOOLS_SOURCE_H
#define TALVANE_TOOLS_SOURCE_H

#include <string>

namespace tool {

struct Source {
    const char* name;
    std::string (*whyNotRead)();  // one line; asked only after the library failed
};

extern const Source kPhysicalMemory;

}  // namespace tool

#endif
