// SPDX-License-Identifier: MIT
//
// What a caller gets when the bridge itself has run out of something.
#ifndef TALVANE_BRIDGE_FAILURE_H
#define TALVANE_BRIDGE_FAILURE_H

#include <exception>

namespace bridge {

// Logs the exception. Returns the errno for the caller: ENOMEM without memory, what the system said
// where it refused a thread or a descriptor, else EIO.
[[nodiscard]] int ErrorOf(const std::exception& failure) noexcept;

}  // namespace bridge

#endif
