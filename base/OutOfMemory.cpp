// SPDX-License-Identifier: MIT
//
// The one place from which the library throws by itself, or ends the process.

#include "base/OutOfMemory.h"

#include <cstdlib>

namespace talvane {

// std::__throw_bad_alloc(), which every version of the C++ runtime library has.
[[noreturn, gnu::weak]] void ThrowBadAlloc() asm("_ZSt17__throw_bad_allocv");

void OutOfMemory() {
    if (&ThrowBadAlloc != nullptr) ThrowBadAlloc();
    std::abort();
}

}  // namespace talvane
