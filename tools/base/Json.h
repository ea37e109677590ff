// SPDX-License-Identifier: MIT
//
// The JSON of the tool: members in the order in which they are written.
#ifndef TALVANE_TOOLS_BASE_JSON_H
#define TALVANE_TOOLS_BASE_JSON_H

#include <nlohmann/json.hpp>

namespace tool {

using Json = nlohmann::ordered_json;

}  // namespace tool

#endif
