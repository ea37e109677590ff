// SPDX-License-Identifier: MIT
//
// The codes of IPMI that this room knows: commands that it looks into, and completion codes.
#ifndef TALVANE_TRANSPORT_IPMICODES_H
#define TALVANE_TRANSPORT_IPMICODES_H

#include <cstdint>

namespace transport {

constexpr std::uint8_t kBmcLun = 0;

// Commands of the network function Storage (IPMI 2.0, 33 and 34).
constexpr std::uint8_t kStorage = 0x0A;
constexpr std::uint8_t kReadInventory = 0x11;  // Read FRU Data
constexpr std::uint8_t kReserveRepository = 0x22;
constexpr std::uint8_t kGetRecord = 0x23;  // Get SDR

// Completion codes (IPMI 2.0, table 5-2).
constexpr std::uint8_t kDone = 0x00;
constexpr std::uint8_t kReservationCancelled = 0xC5;
constexpr std::uint8_t kLengthInvalid = 0xC7;
constexpr std::uint8_t kLengthLimitExceeded = 0xC8;
constexpr std::uint8_t kOutOfRange = 0xC9;
constexpr std::uint8_t kCannotReturnSoMuch = 0xCA;
constexpr std::uint8_t kUnspecified = 0xFF;

}  // namespace transport

#endif
