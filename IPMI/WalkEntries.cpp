// SPDX-License-Identifier: MIT
//
// Each walk is one block of memory: a head, then the entries. The heads of an object's walks form a
// ring, so that all of them are reached from any of them.

#include "IPMI/WalkEntries.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <new>

#include "base/OutOfMemory.h"

namespace talvane {

namespace {

struct WalkHead {
    int count;
    WalkHead* next;
};
static_assert(sizeof(WalkHead) % alignof(SensorDescription) == 0,
              "the entries follow the head without padding");
static_assert(alignof(WalkHead) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__,
              "operator new aligns the head");

WalkHead* HeadOf(SensorDescription* entries) {
    void* const memory = reinterpret_cast<unsigned char*>(entries) - sizeof(WalkHead);
    return static_cast<WalkHead*>(memory);
}

SensorDescription* EntriesOf(WalkHead* head) {
    void* const memory = head + 1;
    return static_cast<SensorDescription*>(memory);
}

WalkHead* NewWalk(int count) {
    constexpr std::size_t kMaxEntryBytes =
        std::numeric_limits<std::size_t>::max() - sizeof(WalkHead);
    const std::size_t entryCount = static_cast<std::size_t>(count);
    if (entryCount > kMaxEntryBytes / sizeof(SensorDescription)) OutOfMemory();
    void* const memory = ::operator new(sizeof(WalkHead) + entryCount * sizeof(SensorDescription));
    WalkHead* const head = new (memory) WalkHead{count, nullptr};
    std::uninitialized_value_construct_n(EntriesOf(head), count);
    return head;
}

}  // namespace

SensorDescription* WalkEntries::Allocate(int count) {
    WalkHead* const added = NewWalk(count);
    WalkHead* const known = entries_ == nullptr ? added : HeadOf(entries_);
    added->next = entries_ == nullptr ? added : known->next;
    known->next = added;
    return EntriesOf(added);
}

SensorDescription* WalkEntries::At(int index) const {
    if (entries_ == nullptr || index < 0 || index >= HeadOf(entries_)->count) return nullptr;
    return &entries_[index];
}

void WalkEntries::FreeAll() {
    if (entries_ == nullptr) return;
    WalkHead* const first = HeadOf(entries_);
    WalkHead* head = first;
    do {
        WalkHead* const next = head->next;
        ::operator delete(head);
        head = next;
    } while (head != first);
    entries_ = nullptr;
}

}  // namespace talvane
