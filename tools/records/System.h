// SPDX-License-Identifier: MIT
//
// The system as its maker calls it.
#ifndef TALVANE_TOOLS_RECORDS_SYSTEM_H
#define TALVANE_TOOLS_RECORDS_SYSTEM_H

#include <optional>
#include <string>

#include "tools/base/Json.h"

namespace tool {

struct System {
    std::string manufacturer;
    std::string product;
    std::string version;
};

// Nothing when the source cannot be read.
std::optional<System> ReadSystem();

std::string ToText(const System& system);
Json ToJson(const System& system);

}  // namespace tool

#endif
