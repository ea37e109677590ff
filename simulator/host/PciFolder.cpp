// SPDX-License-Identifier: MIT
//
// Domain, bus, device and function, in hexadecimal digits.

#include "simulator/host/PciFolder.h"

#include <charconv>

namespace sim {
namespace {

std::optional<unsigned> HexNumber(std::string_view digits, unsigned largest) {
    unsigned value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    if (error != std::errc() || stop != end || value > largest) return std::nullopt;
    return value;
}

}  // namespace

std::optional<PciLocation> PciLocationOf(std::string_view name) {
    constexpr std::string_view kDomain = "0000:";
    constexpr std::size_t kSize = 12;  // 0000:00:1f.2
    if (name.size() != kSize || !name.starts_with(kDomain) || name[7] != ':' || name[10] != '.')
        return std::nullopt;
    const auto bus = HexNumber(name.substr(5, 2), 0xFF);
    const auto device = HexNumber(name.substr(8, 2), 31);
    const auto function = HexNumber(name.substr(11, 1), 7);
    if (!bus || !device || !function) return std::nullopt;
    return PciLocation{*bus, *device, *function};
}

}  // namespace sim
