// SPDX-License-Identifier: MIT
//
// The commands that change something in the BMC. What could do harm shows first what it would do
// and is done only when it is confirmed.
#ifndef TALVANE_TOOLS_CHANGES_H
#define TALVANE_TOOLS_CHANGES_H

#include <ostream>
#include <span>
#include <string>

#include "tools/Commands.h"
#include "tools/Report.h"

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
    std::string problem;  // why nothing or not all was done; empty when it was
};

struct Change {
    const char* name;    // on the command line, words separated by blanks
    const char* member;  // in JSON
    Outcome (*make)(const Order&);
};

std::span<const Change> Changes();

// Makes the change and writes what came of it, in the form of Report. Returns whether it was done.
bool Make(const Change& change, const Order& order, Format format, std::ostream& out,
          std::ostream& err);

}  // namespace tool

#endif
