// SPDX-License-Identifier: MIT
//
// The 32-byte record that a caller of /dev/ipmi passes with its ioctl, in the layout of a 32-bit
// program: addresses have four bytes on any kernel.
#ifndef TALVANE_TRANSPORT_CALLERRECORD_H
#define TALVANE_TRANSPORT_CALLERRECORD_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>

namespace transport {

// The ioctl: read and write, 4 bytes, type 'S', number 1.
constexpr unsigned kSendMessage = 0xC0045301;

constexpr std::size_t kRecordSize = 32;

// The longest request that the kernel's IPMI driver takes (IPMI_MAX_MSG_LENGTH).
constexpr std::size_t kMaxData = 272;

// Callers do not set the length field of their response buffer, so it is not read. All of them have
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

// Reads a record. Returns 0; EINVAL for a record that is not a request to the BMC; or EFAULT for
// one without the addresses that it needs. On an error `record` is untouched.
[[nodiscard]] int DecodeRecord(std::span<const std::uint8_t, kRecordSize> bytes,
                               CallerRecord& record);

// Writes the result of the request into its record. The rest of the record is untouched.
void StoreResult(std::span<std::uint8_t, kRecordSize> bytes, std::uint8_t completion,
                 std::uint32_t responseLength);

}  // namespace transport

#endif
