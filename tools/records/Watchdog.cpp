// SPDX-License-Identifier: MIT
//
// Reads and shows GetWatchDogTimer.

#include "tools/records/Watchdog.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"

namespace tool {

std::optional<Watchdog> ReadWatchdog() {
    unsigned char action = 0;
    Watchdog watchdog{};
    if (GetWatchDogTimer(&action, &watchdog.timeout, &watchdog.left) != 0) return std::nullopt;
    watchdog.action = action;
    return watchdog;
}

std::string ActionText(int action) {
    const auto index = static_cast<std::size_t>(action);
    return index < kWatchdogActions.size() ? kWatchdogActions[index] : std::to_string(action);
}

std::string SecondsText(int milliseconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f s", milliseconds / 1000.0);
    return text;
}

std::vector<Fact> WatchdogFacts(const Watchdog& watchdog) {
    return {{"Action", ActionText(watchdog.action)},
            {"Timeout", SecondsText(watchdog.timeout)},
            {"Left", SecondsText(watchdog.left)}};
}

std::string ToText(const Watchdog& watchdog) {
    return Section("Watchdog", {FactBlock(WatchdogFacts(watchdog))});
}

namespace {

Json DurationJson(int milliseconds) {
    return QuantityJson(milliseconds / 1000.0, "s", SecondsText(milliseconds));
}

}  // namespace

Json ToJson(const Watchdog& watchdog) {
    return {{"action", ActionText(watchdog.action)},
            {"timeout", DurationJson(watchdog.timeout)},
            {"left", DurationJson(watchdog.left)}};
}

}  // namespace tool
