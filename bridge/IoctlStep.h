// SPDX-License-Identifier: MIT
//
// The stages of an ioctl. The kernel first passes only the caller's address, then the record at
// that address, then the record followed by the request's data. For the next stage it has to be
// told where the bytes are. It fetches them anew each time, and a caller may have changed them in
// between.
#ifndef TALVANE_BRIDGE_IOCTLSTEP_H
#define TALVANE_BRIDGE_IOCTLSTEP_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "transport/CallerRecord.h"

namespace bridge {

struct IoctlStep {
    enum class Kind { kRefuse, kFetchRecord, kFetchData, kServe };

    Kind kind = Kind::kRefuse;
    int error = 0;                   // errno of a refusal
    transport::CallerRecord record;  // from the second stage on
};

// What the kernel has passed of an ioctl.
struct IoctlStage {
    unsigned command = 0;
    bool callerHas32Bits = false;
    std::span<const std::uint8_t> call;  // record and data
    std::size_t room = 0;                // for record and response
};

// What to do at this stage.
[[nodiscard]] IoctlStep NextStep(const IoctlStage& stage);

}  // namespace bridge

#endif
