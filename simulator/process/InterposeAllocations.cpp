// SPDX-License-Identifier: MIT
//
// The allocating operators, so that allocations of the observed library can be counted and made to
// fail. Memory still comes from the operators behind these, which keeps the pairing that
// AddressSanitizer checks; releasing needs no interposition.

#include <new>

#include "simulator/machine/Machine.h"
#include "simulator/process/Callers.h"
#include "simulator/process/Interpose.h"
#include "simulator/process/RealFunction.h"

namespace {

bool refused(const void* caller) {
    sim::Machine* const machine = sim::Interposition::machine();
    return machine != nullptr && !sim::observedCaller(caller).empty() && machine->allocate();
}

void* throwing(const char* name, const void* caller, std::size_t size) {
    if (refused(caller)) throw std::bad_alloc();
    return sim::realFunction<void*(std::size_t)>(name)(size);
}

void* quiet(const char* name, const void* caller, std::size_t size) {
    if (refused(caller)) return nullptr;
    using Function = void*(std::size_t, const std::nothrow_t&);
    return sim::realFunction<Function>(name)(size, std::nothrow);
}

}  // namespace

namespace sim {

void linkInterposedAllocations() {}

}  // namespace sim

// The names are those of the i686 C++ ABI, where size_t is unsigned int (j).
void* operator new(std::size_t size) {
    return throwing("_Znwj", __builtin_return_address(0), size);
}

void* operator new[](std::size_t size) {
    return throwing("_Znaj", __builtin_return_address(0), size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return quiet("_ZnwjRKSt9nothrow_t", __builtin_return_address(0), size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return quiet("_ZnajRKSt9nothrow_t", __builtin_return_address(0), size);
}
