// SPDX-License-Identifier: MIT
//
// What a change is to do, and what came of it.
#ifndef TALVANE_TOOLS_CHANGES_ORDER_H
#define TALVANE_TOOLS_CHANGES_ORDER_H

#include <nlohmann/json.hpp>
#include <string>

#include "tools/base/Json.h"

namespace tool {

struct ThresholdOrder {
    int entity = 0;
    int type = 0;
    int which = 0;  // ThresholdFlag
    double value = 0;
};

struct WatchdogOrder {
    int action = 0;
    int timeout = 0;  // milliseconds
};

struct Order {
    ThresholdOrder threshold;
    WatchdogOrder watchdog;
    bool confirmed = false;
};

struct Outcome {
    std::string text;  // whole sections; empty for none
    Json json;
    std::string problem;  // why nothing or not all was done; empty when all was done
};

}  // namespace tool

#endif
