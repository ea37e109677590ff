// SPDX-License-Identifier: MIT
//
// The allocating operators, so that allocations of the observed library can be counted and made to
// fail. The memory still comes from the real operators, so that it can be released by the real
// ones, as AddressSanitizer demands.

#include <atomic>
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

// A real operator. It is looked for once, since finding it takes longer than the allocation, and it
// stays, since this module needs the C++ runtime library that has it. Threads do not wait for each
// other here: one may be within the dynamic linker, which another one needs for the search.
template <typename Operator>
class RealOperator {
public:
    explicit constexpr RealOperator(const char* name) : name_(name) {}

    Operator& Get() {
        Operator* found = found_;
        if (found == nullptr) found_ = found = sim::RealFunction<Operator>(name_);
        return *found;
    }

private:
    const char* name_;
    std::atomic<Operator*> found_ = nullptr;
};

// The names are those of the i686 C++ ABI, where size_t is unsigned int (j).
constinit RealOperator<New> realNew{"_Znwj"};
constinit RealOperator<New> realNewArray{"_Znaj"};
constinit RealOperator<NewOrNull> realNewOrNull{"_ZnwjRKSt9nothrow_t"};
constinit RealOperator<NewOrNull> realNewArrayOrNull{"_ZnajRKSt9nothrow_t"};

void* AllocateOrThrow(RealOperator<New>& real, const void* caller, std::size_t size) {
    if (AllocationRefused(caller)) throw std::bad_alloc();
    return real.Get()(size);
}

void* AllocateOrNull(RealOperator<NewOrNull>& real, const void* caller, std::size_t size) {
    return AllocationRefused(caller) ? nullptr : real.Get()(size, std::nothrow);
}

}  // namespace

namespace sim {

void LinkInterposedAllocations() {}

}  // namespace sim

void* operator new(std::size_t size) {
    return AllocateOrThrow(realNew, __builtin_return_address(0), size);
}

void* operator new[](std::size_t size) {
    return AllocateOrThrow(realNewArray, __builtin_return_address(0), size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return AllocateOrNull(realNewOrNull, __builtin_return_address(0), size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return AllocateOrNull(realNewArrayOrNull, __builtin_return_address(0), size);
}
