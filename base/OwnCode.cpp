// SPDX-License-Identifier: MIT
//
// The bounds of the library's code in memory, which the linker sets.

#include "base/OwnCode.h"

namespace talvane {

[[gnu::visibility("hidden")]] extern const char kCodeStart[] asm("__ehdr_start");
[[gnu::visibility("hidden")]] extern const char kCodeEnd[] asm("_etext");

bool IsCodeOfLibrary(std::uintptr_t address) {
    return address >= reinterpret_cast<std::uintptr_t>(kCodeStart) &&
           address < reinterpret_cast<std::uintptr_t>(kCodeEnd);
}

}  // namespace talvane
