// SPDX-License-Identifier: MIT
//
// An agent in C++ with operators new and delete of its own. The library allocates with them, lets
// the exception of a failed allocation pass, and its classes take part in the agent's types.
#include <cstddef>
#include <new>

#include "Agent.h"

namespace {

int allocations = 0;
int releases = 0;
int refusedAllocation = 0;  // counted from 1; 0 for none

void* Allocate(std::size_t size) {
    ++allocations;
    return allocations == refusedAllocation ? nullptr : std::malloc(size);
}

void Release(void* memory) {
    if (memory == nullptr) return;
    ++releases;
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
    void* const memory = Allocate(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}

void operator delete(void* memory) noexcept {
    Release(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    Release(memory);
}

namespace {

// Refuses each allocation of a PCI report in turn until none is refused any more.
void CheckThatFailedAllocationsPass() {
    static DeviceInformation devices;
    bool passed = false;
    int refusals = 0;
    while (!passed) {
        allocations = 0;
        releases = 0;
        refusedAllocation = ++refusals;
        try {
            CHECK(CallGetInfo(TALVANE_PCI, &devices) == 0);
            passed = true;
        } catch (const std::bad_alloc&) {
            --allocations;  // the one that was refused
        }
        CHECK(allocations == releases);
    }
    refusedAllocation = 0;
    CHECK(refusals == 2);  // one function, one allocation
}

void CheckThatTheReaderIsTheAgents() {
    allocations = 0;
    releases = 0;
    CheckReports();
    CHECK(allocations > 0);
    CHECK(CallRelease() == 0);
    CHECK(allocations == releases);
}

}  // namespace

#ifdef AGENT_LOADS

int main(int argc, char** argv) {
    FindCalls(argc, argv);
    CheckThatFailedAllocationsPass();
    CheckThatTheReaderIsTheAgents();
}

#else

#include <typeinfo>

#include "IPMI/IPMIsupport.h"
#include "SmBios/SmBios.h"

namespace {

// The library's classes have no virtual destructor, and so has what derives from them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class OwnSupport : public IPMIsupport {};
#pragma GCC diagnostic pop

void CheckThatClassesCanBeDerivedFromAndCast() {
    OwnSupport own;
    IPMIbase* const base = &own;
    CHECK(dynamic_cast<OwnSupport*>(base) == &own);
    CHECK(dynamic_cast<IPMIsupport*>(base) == &own);
    CHECK(dynamic_cast<Sensor*>(base) == nullptr);
    IPMIbase plain;
    IPMIbase* const other = &plain;
    CHECK(dynamic_cast<IPMIsupport*>(other) == nullptr);
    CHECK(typeid(*base) == typeid(OwnSupport));
    CHECK(typeid(*other) == typeid(IPMIbase));
}

// GetItem is private; this program is compiled without access control.
void CheckThatTheCallerDeletesWhatGetItemReturns() {
    SmBios bios;
    allocations = 0;
    releases = 0;
    BiosDataItem* const item = bios.GetItem(2, 1);
    CHECK(item != nullptr);
    CHECK(item->GetHandle() == 0x0100);
    CHECK(allocations > 0 && releases == 0);
    delete item;
    CHECK(allocations == releases);
}

}  // namespace

int main(int argc, char** argv) {
    FindCalls(argc, argv);
    CheckThatClassesCanBeDerivedFromAndCast();
    CheckThatTheCallerDeletesWhatGetItemReturns();
    CheckThatFailedAllocationsPass();
    CheckThatTheReaderIsTheAgents();
}

#endif
