// SPDX-License-Identifier: MIT
//
// The kernel counts whole milliseconds, in an int.

#include "transport/PollTimeout.h"

#include <algorithm>
#include <limits>

namespace transport {

int PollTimeout(Deadline deadline) {
    using std::chrono::milliseconds;
    const auto left = std::chrono::ceil<milliseconds>(deadline - Deadline::clock::now()).count();
    const auto most = static_cast<milliseconds::rep>(std::numeric_limits<int>::max());
    return static_cast<int>(std::clamp<milliseconds::rep>(left, 0, most));
}

}  // namespace transport
