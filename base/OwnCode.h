// SPDX-License-Identifier: MIT
//
// Tells the library's own functions from those that an agent has put in their place: the dynamic
// linker resolves an exported name to the agent's definition where there is one.
#ifndef TALVANE_BASE_OWNCODE_H
#define TALVANE_BASE_OWNCODE_H

#include <bit>
#include <cstdint>

namespace talvane {

// Whether there is code of the library at this address.
bool IsCodeOfLibrary(std::uintptr_t address);

// For a method that is not virtual: the first word of a pointer to it is its address (Itanium C++
// ABI, 2.3).
template <class Method>
bool IsOwnCode(Method method) {
    struct Words {
        std::uintptr_t address;
        std::uintptr_t adjustment;
    };
    return IsCodeOfLibrary(std::bit_cast<Words>(method).address);
}

}  // namespace talvane

#endif
