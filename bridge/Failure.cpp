// SPDX-License-Identifier: MIT
//
// Exceptions of the C++ library and of system calls.

#include "bridge/Failure.h"

#include <cerrno>
#include <new>
#include <system_error>

#include "bridge/Log.h"

namespace bridge {

int ErrorOf(const std::exception& failure) noexcept {
    if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr) {
        Log(Priority::kError, "out of memory");
        return ENOMEM;
    }
    Log(Priority::kError, failure.what());
    const auto* const system = dynamic_cast<const std::system_error*>(&failure);
    return system != nullptr && system->code().value() > 0 ? system->code().value() : EIO;
}

}  // namespace bridge
