// SPDX-License-Identifier: MIT
//
// A request of a caller, as it waits for its turn at an open file.
#ifndef TALVANE_BRIDGE_CALL_H
#define TALVANE_BRIDGE_CALL_H

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <span>

#include "transport/CallerRecord.h"
#include "transport/Message.h"

namespace bridge {

struct Call {
    std::uintptr_t id = 0;  // differs from that of every other call that has no reply yet
    pid_t process = 0;      // of the thread that asks
    uid_t user = 0;
    transport::CallerRecord record;
    transport::Bytes bytes;        // record and data
    transport::Deadline deadline;  // of its reply

    // Gives the caller an errno, or with 0 its record and the response. Called just once.
    std::function<void(int error, std::span<const std::uint8_t> answer)> reply;
};

}  // namespace bridge

#endif
