// SPDX-License-Identifier: MIT
//
// Decodes the caller's record, with the checks that keep invalid requests from the kernel's driver.

#include "transport/CallerRecord.h"

#include <algorithm>
#include <cerrno>
#include <limits>

namespace transport {
namespace {

// Offsets in the record. Three bytes of padding follow the LUN and the completion code.
constexpr std::size_t kCommand = 0;
constexpr std::size_t kResponder = 1;
constexpr std::size_t kBus = 2;
constexpr std::size_t kNetFn = 3;
constexpr std::size_t kLun = 4;
constexpr std::size_t kDataAddress = 8;
constexpr std::size_t kDataLength = 12;
constexpr std::size_t kTimeout = 16;
constexpr std::size_t kResponseAddress = 20;
constexpr std::size_t kResponseLength = 24;
constexpr std::size_t kCompletion = 28;

constexpr std::uint8_t kBmcAddress = 0x20;  // IPMI 2.0, 5.2
constexpr std::uint8_t kAnyAddress = 0xFF;
constexpr std::uint8_t kPublicBus = 0;
constexpr std::uint8_t kMaxNetFn = 0x3F;  // six bits; odd ones are responses (IPMI 2.0, 5.1)
constexpr std::uint8_t kMaxLun = 3;

// A caller that states no time-out gets the time after which the kernel gives a BMC up. No caller
// waits longer than a minute, so that a silent BMC does not keep its file busy for long.
constexpr std::chrono::milliseconds kDefaultTimeout{5000};
constexpr std::chrono::milliseconds kMaxTimeout{60000};

using Record = std::span<const std::uint8_t, kRecordSize>;

std::uint32_t Le32(Record bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i > 0; --i) value = value << 8 | bytes[at + i - 1];
    return value;
}

bool IsForTheBmc(Record bytes) {
    const std::uint8_t responder = bytes[kResponder];
    return (responder == kBmcAddress || responder == kAnyAddress) && bytes[kBus] == kPublicBus;
}

bool IsRequest(Record bytes) {
    return bytes[kNetFn] <= kMaxNetFn && bytes[kNetFn] % 2 == 0 && bytes[kLun] <= kMaxLun;
}

}  // namespace

int DecodeRecord(Record bytes, CallerRecord& record) {
    if (!IsForTheBmc(bytes) || !IsRequest(bytes)) return EINVAL;
    const std::uint32_t dataLength = Le32(bytes, kDataLength);
    if (dataLength > kMaxData) return EINVAL;
    const std::uint32_t dataAddress = Le32(bytes, kDataAddress);
    const std::uint32_t responseAddress = Le32(bytes, kResponseAddress);
    if (responseAddress == 0 || (dataAddress == 0 && dataLength != 0)) return EFAULT;
    constexpr std::uint32_t kTop = std::numeric_limits<std::uint32_t>::max();
    if (dataLength > kTop - dataAddress)
        return EFAULT;  // beyond the last address of a 32-bit program

    record.command = bytes[kCommand];
    record.netFn = bytes[kNetFn];
    record.lun = bytes[kLun];
    record.dataAddress = dataAddress;
    record.dataLength = dataLength;
    record.responseAddress = responseAddress;
    const std::chrono::milliseconds timeout{Le32(bytes, kTimeout)};
    record.timeout = timeout.count() == 0 ? kDefaultTimeout : std::min(timeout, kMaxTimeout);
    return 0;
}

void StoreResult(std::span<std::uint8_t, kRecordSize> bytes, std::uint8_t completion,
                 std::uint32_t responseLength) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[kResponseLength + i] = static_cast<std::uint8_t>(responseLength >> (8 * i));
    bytes[kCompletion] = completion;
}

}  // namespace transport
