// SPDX-License-Identifier: MIT
//
// What a sensor shows over the machine's time. Each value holds from its moment until the next.
#ifndef TALVANE_SIMULATOR_BMC_BMCTIMELINE_H
#define TALVANE_SIMULATOR_BMC_BMCTIMELINE_H

#include <array>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>

namespace sim {

struct BmcReading {
    std::uint8_t raw = 0;
    bool available = true;
};

using BmcStates = std::array<std::uint8_t, 2>;  // states 0 to 7, and 8 to 15

struct BmcTimeline {
    std::map<std::chrono::seconds, BmcReading> readings;
    std::map<std::chrono::seconds, BmcStates> states;
};

// The value that holds at `now`; nothing before the first moment.
template <typename Value>
std::optional<Value> ValueAt(const std::map<std::chrono::seconds, Value>& timeline,
                             std::chrono::seconds now) {
    const auto next = timeline.upper_bound(now);
    if (next == timeline.begin()) return std::nullopt;
    return std::prev(next)->second;
}

}  // namespace sim

#endif
