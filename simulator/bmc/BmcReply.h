// SPDX-License-Identifier: MIT
//
// Parts of the controller's replies: completion codes (IPMI 2.0, 5.2), and the two bytes of a
// 16-bit value, which is sent low byte first.
#ifndef TALVANE_SIMULATOR_BMC_BMCREPLY_H
#define TALVANE_SIMULATOR_BMC_BMCREPLY_H

#include <cstddef>
#include <cstdint>

namespace sim {

inline constexpr std::uint8_t kUnknownCommand = 0xC1;
inline constexpr std::uint8_t kWrongLength = 0xC7;
inline constexpr std::uint8_t kOutOfRange = 0xC9;
inline constexpr std::uint8_t kNotPresent = 0xCB;
inline constexpr std::uint8_t kInvalidField = 0xCC;

constexpr std::uint8_t Low(std::size_t value) {
    return static_cast<std::uint8_t>(value & 0xFF);
}

constexpr std::uint8_t High(std::size_t value) {
    return static_cast<std::uint8_t>((value >> 8) & 0xFF);
}

}  // namespace sim

#endif
