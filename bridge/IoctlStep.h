// SPDX-License-Identifier: MIT
//
// The stages of an ioctl. The kernel first passes the caller's address only, then the record that
// stands there, then the request's data behind it, each when told where to find it. What it passes
// is fetched anew each time, and a caller may have changed it meanwhile.
#ifndef TALVANE_BRIDGE_IOCTLSTEP_H
#define TALVANE_BRIDGE_IOCTLSTEP_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "bridge/CallerRecord.h"

namespace bridge {

struct IoctlStep {
    enum class Kind { kRefuse, kFetchRecord, kFetchData, kServe };

    Kind kind = Kind::kRefuse;
    int error = 0;        // of a refusal
    CallerRecord record;  // once it is there
};

// What the kernel has passed of an ioctl.
struct IoctlStage {
    unsigned command = 0;
    bool callerHas32Bits = false;
    std::span<const std::uint8_t> call;  // record and data
    std::size_t room = 0;                // for record and response
};

[[nodiscard]] IoctlStep NextStep(const IoctlStage& stage);

}  // namespace bridge

#endif
