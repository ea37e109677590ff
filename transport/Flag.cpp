// SPDX-License-Identifier: MIT
//
// An event counter of the kernel.

#include "transport/Flag.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

namespace transport {

Flag::Flag() : descriptor_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

Flag::~Flag() {
    (void)close(descriptor_);  // result not used: nothing is buffered
}

void Flag::Raise() {
    raised_ = true;
    const std::uint64_t one = 1;
    (void)!write(descriptor_, &one, sizeof(one));  // result not used: a full counter is readable
}

void Flag::Lower() {
    std::uint64_t count = 0;
    (void)!read(descriptor_, &count, sizeof(count));  // result not used: it may be 0 already
    raised_ = false;
}

}  // namespace transport
