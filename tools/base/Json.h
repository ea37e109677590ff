// SPDX-License-Identifier: MIT
//
// The JSON of the tool: members in the order in which they are written. A file that makes or reads
// a value includes <nlohmann/json.hpp> itself, which takes a compiler seconds.
#ifndef TALVANE_TOOLS_BASE_JSON_H
#define TALVANE_TOOLS_BASE_JSON_H

#include <nlohmann/json_fwd.hpp>

namespace tool {

using Json = nlohmann::ordered_json;

}  // namespace tool

#endif
