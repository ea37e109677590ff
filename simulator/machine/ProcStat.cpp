// SPDX-License-Identifier: MIT
//
// Writes /proc/stat as Linux 2.4 does: a line per processor with four counters, in ticks of a
// hundredth of a second. The first line is the sum of the others.

#include "simulator/machine/ProcStat.h"

#include <array>
#include <iterator>

namespace sim {
namespace {

constexpr std::uint64_t kSecondsBefore = 1000;

using Ticks = std::array<std::uint64_t, 4>;

std::string CounterLine(const std::string& name, const Ticks& ticks) {
    std::string text = name;
    for (const std::uint64_t count : ticks) text += " " + std::to_string(count);
    return text + "\n";
}

}  // namespace

std::string ProcStat::Text(std::chrono::seconds now) const {
    const auto next = texts_.upper_bound(now);
    if (next != texts_.begin()) return std::prev(next)->second;

    const std::uint64_t up = kSecondsBefore + static_cast<std::uint64_t>(now.count());
    Ticks sum{};
    std::string cpus;
    for (const auto& [cpu, rates] : rates_) {
        const Ticks ticks = {rates.user * up, rates.nice * up, rates.system * up, rates.idle * up};
        for (std::size_t i = 0; i < ticks.size(); ++i) sum[i] += ticks[i];
        cpus += CounterLine("cpu" + std::to_string(cpu), ticks);
    }
    return CounterLine("cpu ", sum) + cpus;
}

}  // namespace sim
