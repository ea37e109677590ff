// SPDX-License-Identifier: MIT
//
// The port connectors.
#ifndef TALVANE_TOOLS_RECORDS_PORTS_H
#define TALVANE_TOOLS_RECORDS_PORTS_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"

namespace tool {

struct Port {
    std::string designation;
    std::string type;
};

using Ports = std::vector<Port>;

// Nothing when the source cannot be read.
std::optional<Ports> ReadPorts();

std::string ToText(const Ports& ports);
Json ToJson(const Ports& ports);

}  // namespace tool

#endif
