// SPDX-License-Identifier: MIT
//
// The cooling devices that the firmware lists, each with its nominal speed.
#ifndef TALVANE_TOOLS_RECORDS_FANS_H
#define TALVANE_TOOLS_RECORDS_FANS_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"

namespace tool {

struct Fan {
    std::string speed;
};

using Fans = std::vector<Fan>;

// Nothing when the source cannot be read.
std::optional<Fans> ReadFans();

std::string ToText(const Fans& fans);
Json ToJson(const Fans& fans);

}  // namespace tool

#endif
