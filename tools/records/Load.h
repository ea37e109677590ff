// SPDX-License-Identifier: MIT
//
// How busy processors and memory are.
#ifndef TALVANE_TOOLS_RECORDS_LOAD_H
#define TALVANE_TOOLS_RECORDS_LOAD_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"
#include "tools/base/Settings.h"
#include "tools/base/Source.h"

namespace tool {

struct Load {
    int interval;                                // seconds that the processors were watched
    std::optional<std::vector<int>> processors;  // busy percent of the first eight
    std::optional<int> memory;                   // used percent, as the command free counts it
    std::vector<const Source*> notRead;          // of the two loads
};

// Takes the interval of the settings to measure.
Load ReadLoad(const Settings& settings);

// How the shares are counted.
std::string LoadNote(const Load& load);

std::string ToText(const Load& load);
Json ToJson(const Load& load);

}  // namespace tool

#endif
