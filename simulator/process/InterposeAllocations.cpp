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

using New = void*(std::size_t);
using NewOrNull = void*(std::size_t, const std::nothrow_t&);

void* AllocateOrThrow(New& real, const void* caller, std::size_t size) {
    if (AllocationRefused(caller)) throw std::bad_alloc();
    return real(size);
}

void* AllocateOrNull(NewOrNull& real, const void* caller, std::size_t size) {
    return AllocationRefused(caller) ? nullptr : real(size, std::nothrow);
}

}  // namespace

namespace sim {

void LinkInterposedAllocations() {}

}  // namespace sim

// The names passed on are those of the i686 C++ ABI, where size_t is unsigned int (j).
// Each looks for the real operator once: finding it takes longer than the allocation, and it stays,
// since this module needs the C++ runtime library that has it.

void* operator new(std::size_t size) {
    static New& real = *sim::RealFunction<New>("_Znwj");
    return AllocateOrThrow(real, __builtin_return_address(0), size);
}

void* operator new[](std::size_t size) {
    static New& real = *sim::RealFunction<New>("_Znaj");
    return AllocateOrThrow(real, __builtin_return_address(0), size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    static NewOrNull& real = *sim::RealFunction<NewOrNull>("_ZnwjRKSt9nothrow_t");
    return AllocateOrNull(real, __builtin_return_address(0), size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    static NewOrNull& real = *sim::RealFunction<NewOrNull>("_ZnajRKSt9nothrow_t");
    return AllocateOrNull(real, __builtin_return_address(0), size);
}
