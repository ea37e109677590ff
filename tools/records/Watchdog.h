// SPDX-License-Identifier: MIT
//
// The BMC's watchdog timer.
#ifndef TALVANE_TOOLS_RECORDS_WATCHDOG_H
#define TALVANE_TOOLS_RECORDS_WATCHDOG_H

#include <array>
#include <optional>
#include <string>

#include "tools/base/Json.h"
#include "tools/base/Layout.h"

namespace tool {

// What the BMC does when the timer has run down, by code (IPMI 2.0, 27.6).
inline constexpr std::array<const char*, 4> kWatchdogActions = {"none", "hard-reset", "power-down",
                                                                "power-cycle"};
inline constexpr int kNoAction = 0;

struct Watchdog {
    int action;
    int timeout;  // milliseconds, as `left`
    int left;     // equal to the timeout until the first start
};

// Nothing when the source cannot be read.
std::optional<Watchdog> ReadWatchdog();

// The action's name; the number of one that has none.
std::string ActionText(int action);

// "180.0 s", from milliseconds.
std::string SecondsText(int milliseconds);

std::vector<Fact> WatchdogFacts(const Watchdog& watchdog);
std::string ToText(const Watchdog& watchdog);
Json ToJson(const Watchdog& watchdog);

}  // namespace tool

#endif
