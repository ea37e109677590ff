// SPDX-License-Identifier: MIT
//
// The 32-byte record that a caller of /dev/ipmi passes with its ioctl, in the layout of a 32-bit
// program: addresses are four bytes, whatever the kernel.
#ifndef TALVANE_BRIDGE_CALLERRECORD_H
#define TALVANE_BRIDGE_CALLERRECORD_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>

namespace bridge {

// The ioctl: read and write, 4 bytes, type 'S', number 1.
constexpr unsigned kSendMessage = 0xC0045301;

constexpr std::size_t kRecordSize = 32;

// The longest request that the kernel's IPMI driver takes (IPMI_MAX_MSG_LENGTH).
constexpr std::size_t kMaxData = 272;

// Callers leave the length field of their response buffer unset, so it says nothing. They have
// room for this much.
constexpr std::size_t kMaxResponse = 256;

struct CallerRecord {
    std::uint8_t command = 0;
    std::uint8_t netFn = 0;
    std::uint8_t lun = 0;
    std::uint32_t dataAddress = 0;
    std::uint32_t dataLength = 0;
    std::chrono::milliseconds timeout{};
    std::uint32_t responseAddress = 0;
};

// Reads a record. Returns 0, EINVAL for a record that no BMC could be asked with, or EFAULT for one
// whose addresses are missing.
[[nodiscard]] int DecodeRecord(std::span<const std::uint8_t, kRecordSize> bytes,
                               CallerRecord& record);

// Writes what became of the request into its record; the rest of it stays as it is.
void StoreResult(std::span<std::uint8_t, kRecordSize> bytes, std::uint8_t completion,
                 std::uint32_t responseLength);

}  // namespace bridge

#endif
