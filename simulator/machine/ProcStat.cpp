// SPDX-License-Identifier: MIT
//
// Writes /proc/stat as Linux 2.4 does: a line per processor with four counters, in ticks of a
// hundredth of a second. The first line is the sum of the others.

#include "simulator/machine/ProcStat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <optional>
#include <string_view>

namespace sim {
namespace {

constexpr std::uint64_t kSecondsBefore = 1000;

using Ticks = std::array<std::uint64_t, 4>;

std::string CounterLine(const std::string& name, const Ticks& ticks) {
    std::string text = name;
    for (const std::uint64_t count : ticks) text += " " + std::to_string(count);
    return text + "\n";
}

bool IsDecimalDigit(char c) {
    return c >= '0' && c <= '9';
}

// Takes the longest start of the text that is all digits, or that has none, off it.
std::string_view TakePart(std::string_view& text) {
    const auto end = std::find_if(text.begin(), text.end(), [&](char c) {
        return IsDecimalDigit(c) != IsDecimalDigit(text.front());
    });
    const std::string_view part = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(part.size());
    return part;
}

// The number that a part of digits is; nothing for any other part, and for too large a number.
std::optional<std::uint64_t> NumberOf(std::string_view part) {
    std::uint64_t value = 0;
    const auto result = std::from_chars(part.data(), part.data() + part.size(), value);
    return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

}  // namespace

// The last text, with its numbers as they go on.
std::string ProcStat::LaterText(std::chrono::seconds now) const {
    const auto& [lastMoment, last] = *std::prev(texts_.end());
    const auto& [momentBefore, before] = *std::prev(texts_.end(), 2);
    std::string_view newer = last;
    std::string_view older = before;
    std::string text;
    while (!newer.empty() && !older.empty()) {
        const std::string_view word = TakePart(newer);
        const std::string_view wordBefore = TakePart(older);
        const auto number = NumberOf(word);
        const auto numberBefore = NumberOf(wordBefore);
        if (number && numberBefore) {
            const double change = static_cast<double>(*number) - static_cast<double>(*numberBefore);
            const double later = static_cast<double>(*number) +
                                 change * static_cast<double>((now - lastMoment).count()) /
                                     static_cast<double>((lastMoment - momentBefore).count());
            text += std::to_string(static_cast<std::uint64_t>(std::max(later, 0.0)));
        } else if (word == wordBefore) {
            text += word;
        } else {
            return last;
        }
    }
    return newer.empty() && older.empty() ? text : last;
}

std::string ProcStat::Text(std::chrono::seconds now) const {
    const auto next = texts_.upper_bound(now);
    const bool isAfterLast = next == texts_.end() && texts_.size() > 1;
    if (isAfterLast && continues_ && now > std::prev(next)->first) return LaterText(now);
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
