// SPDX-License-Identifier: MIT
//
// The sources that records come from, and why one could not be read. The library answers a failure
// with -1 and no reason, or with an empty record. The tool looks for the reason itself.
#ifndef TALVANE_TOOLS_BASE_SOURCE_H
#define TALVANE_TOOLS_BASE_SOURCE_H

#include <string>

namespace tool {

struct Source {
    const char* name;
    std::string (*whyNotRead)();  // one line; asked only after the source failed
    const char* area;             // that it belongs to, as in Way
};

extern const Source kPhysicalMemory;  // SMBIOS
extern const Source kBmc;
extern const Source kPciPorts;
extern const Source kIdeDrives;
extern const Source kDisks;  // their sectors
extern const Source kProcessorTimes;
extern const Source kMemoryUse;

}  // namespace tool

#endif
