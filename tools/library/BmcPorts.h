// SPDX-License-Identifier: MIT
//
// The ports by which the library finds a BMC.
#ifndef TALVANE_TOOLS_LIBRARY_BMCPORTS_H
#define TALVANE_TOOLS_LIBRARY_BMCPORTS_H

#include <cstdint>

namespace tool {

// Status or flags of the two system interfaces at their default base 0xCA2 and 0xCA9 (IPMI 2.0,
// 9.5 and 10.5). All ones mean that no interface is there.
inline constexpr std::uint16_t kKcsStatusPort = 0xCA3;
inline constexpr std::uint16_t kSmicControlPort = 0xCAA;
inline constexpr std::uint8_t kNoInterface = 0xFF;

}  // namespace tool

#endif
