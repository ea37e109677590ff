// SPDX-License-Identifier: MIT
//
// Tells the library's own functions from those that an agent has put in their place: the dynamic
// linker resolves an exported name to the agent's definition where there is one.
#ifndef TALVANE_BASE_OWNCODE_H
#define TALVANE_BASE_OWNCODE_H

#include <bit>
#include <cstdint>

namespace talvane {

// The bounds of the library in memory, which the linker sets.
extern "C" [[gnu::visibility("hidden")]] const char __ehdr_start[];
extern "C" [[gnu::visibility("hidden")]] const char etext[];

// For a method that is not virtual: the first word of a pointer to it is its address (Itanium C++
// ABI, 2.3).
template <class Method>
bool IsOwnCode(Method method) {
    struct Words {
        std::uintptr_t address;
        std::uintptr_t adjustment;
    };
    const std::uintptr_t address = std::bit_cast<Words>(method).address;
    return address >= reinterpret_cast<std::uintptr_t>(__ehdr_start) &&
           address < reinterpret_cast<std::uintptr_t>(etext);
}

}  // namespace talvane

#endif
