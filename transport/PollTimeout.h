// SPDX-License-Identifier: MIT
//
// A deadline as poll(2) takes it.
#ifndef TALVANE_TRANSPORT_POLLTIMEOUT_H
#define TALVANE_TRANSPORT_POLLTIMEOUT_H

#include "transport/Message.h"

namespace transport {

// Milliseconds until the deadline, rounded up; 0 when it is over.
[[nodiscard]] int PollTimeout(Deadline deadline);

}  // namespace transport

#endif
