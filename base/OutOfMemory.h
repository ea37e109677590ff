// SPDX-License-Identifier: MIT
//
// What happens when memory runs out.
#ifndef TALVANE_BASE_OUTOFMEMORY_H
#define TALVANE_BASE_OUTOFMEMORY_H

namespace talvane {

// Throws std::bad_alloc in a program that has the C++ runtime library. Ends a C program, which
// could not catch it.
[[noreturn]] void OutOfMemory();

}  // namespace talvane

#endif
