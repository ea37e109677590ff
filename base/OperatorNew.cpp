// SPDX-License-Identifier: MIT
//
// Where `new` and `delete` in the library lead. The linker is told to send each use of an operator
// to the function of the same name with __wrap_ in front, which stands here, and calls the
// program's operator by the name with __real_ in front.
//
// A C++ program's operators are used, its own or those of its C++ runtime library: so it may delete
// what the library hands out, and it sees and can refuse what the library allocates. A C program
// has no such operators. There malloc and free stand in for them.

#include <cstddef>
#include <cstdlib>
#include <new>

#include "base/OutOfMemory.h"

using std::nothrow_t;
using std::size_t;

namespace talvane {

namespace {

void* AllocateOrThrow(size_t size) {
    void* const memory = std::malloc(size);
    if (memory == nullptr) OutOfMemory();
    return memory;
}

}  // namespace

// The names in quotes are those that compilers give the operators.

[[gnu::weak]] void* ProgramNew(size_t size) asm("__real__Znwj");
void* New(size_t size) asm("__wrap__Znwj");
void* New(size_t size) {
    return &ProgramNew != nullptr ? ProgramNew(size) : AllocateOrThrow(size);
}

[[gnu::weak]] void* ProgramNewArray(size_t size) asm("__real__Znaj");
void* NewArray(size_t size) asm("__wrap__Znaj");
void* NewArray(size_t size) {
    return &ProgramNewArray != nullptr ? ProgramNewArray(size) : AllocateOrThrow(size);
}

[[gnu::weak]] void* ProgramNewOrNull(size_t size,
                                     const nothrow_t& tag) asm("__real__ZnwjRKSt9nothrow_t");
void* NewOrNull(size_t size, const nothrow_t& tag) asm("__wrap__ZnwjRKSt9nothrow_t");
void* NewOrNull(size_t size, const nothrow_t& tag) {
    return &ProgramNewOrNull != nullptr ? ProgramNewOrNull(size, tag) : std::malloc(size);
}

[[gnu::weak]] void* ProgramNewArrayOrNull(size_t size,
                                          const nothrow_t& tag) asm("__real__ZnajRKSt9nothrow_t");
void* NewArrayOrNull(size_t size, const nothrow_t& tag) asm("__wrap__ZnajRKSt9nothrow_t");
void* NewArrayOrNull(size_t size, const nothrow_t& tag) {
    return &ProgramNewArrayOrNull != nullptr ? ProgramNewArrayOrNull(size, tag) : std::malloc(size);
}

[[gnu::weak]] void ProgramDelete(void* memory) asm("__real__ZdlPv");
void Delete(void* memory) asm("__wrap__ZdlPv");
void Delete(void* memory) {
    (&ProgramDelete != nullptr ? ProgramDelete : std::free)(memory);
}

// What a constructor that throws leads to, after a `new` that would have answered null.
// LCOV_EXCL_START: no constructor of the library throws
[[gnu::weak]] void ProgramDeleteOrNull(void* memory,
                                       const nothrow_t& tag) asm("__real__ZdlPvRKSt9nothrow_t");
void DeleteOrNull(void* memory, const nothrow_t& tag) asm("__wrap__ZdlPvRKSt9nothrow_t");
void DeleteOrNull(void* memory, const nothrow_t& tag) {
    if (&ProgramDeleteOrNull == nullptr) return std::free(memory);
    ProgramDeleteOrNull(memory, tag);
}
// LCOV_EXCL_STOP

[[gnu::weak]] void ProgramDeleteArray(void* memory) asm("__real__ZdaPv");
void DeleteArray(void* memory) asm("__wrap__ZdaPv");
void DeleteArray(void* memory) {
    (&ProgramDeleteArray != nullptr ? ProgramDeleteArray : std::free)(memory);
}

}  // namespace talvane
