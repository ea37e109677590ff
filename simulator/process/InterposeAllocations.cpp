// SPDX-License-Identifier: MIT
//
// The allocating operators, so that allocations of the observed library can be counted and made to
// fail. The memory still comes from the real operators, so that it can be released by the real
// ones, as AddressSanitizer demands.

#include <new>

#include "simulator/machine/Machine.h"
#include "simulator/process/Callers.h"
#include "simulator/process/Interpose.h"
#include "simulator/process/RealFunction.h"

namespace {

bool AllocationRefused(const void* caller) {
    sim::Machine* const machine = sim::Interposition::GetMachine();
    return machine != nullptr && !sim::ObservedCaller(caller).empty() && machine->AllocationFails();
}

void* AllocateOrThrow(const char* name, const void* caller, std::size_t size) {
    if (AllocationRefused(caller)) throw std::bad_alloc();
    return sim::RealFunction<void*(std::size_t)>(name)(size);
}

void* AllocateOrNull(const char* name, const void* caller, std::size_t size) {
    if (AllocationRefused(caller)) return nullptr;
    using Function = void*(std::size_t, const std::nothrow_t&);
    return sim::RealFunction<Function>(name)(size, std::nothrow);
}

}  // namespace

namespace sim {

void LinkInterposedAllocations() {}

}  // namespace sim

// The names passed on are those of the i686 C++ ABI, where size_t is unsigned int (j).
void* operator new(std::size_t size) {
    return AllocateOrThrow("_Znwj", __builtin_return_address(0), size);
}

void* operator new[](std::size_t size) {
    return AllocateOrThrow("_Znaj", __builtin_return_address(0), size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return AllocateOrNull("_ZnwjRKSt9nothrow_t", __builtin_return_address(0), size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return AllocateOrNull("_ZnajRKSt9nothrow_t", __builtin_return_address(0), size);
}
