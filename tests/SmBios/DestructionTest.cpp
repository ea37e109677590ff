// SPDX-License-Identifier: MIT
//
// What a reader and an item leave in memory: null pointers where their buffers were, for an agent
// that looks at memory that it provided itself. Only an optimised library can fail here; an
// unoptimised one keeps every store.
#include <array>
#include <cstring>
#include <new>

#include "SmBios/BiosDataItem.h"
#include "SmBios/SmBios.h"
#include "support/InterfaceTest.h"

namespace {

// Memory of the test's own for one object.
template <class Object>
struct Storage {
    alignas(Object) std::array<unsigned char, sizeof(Object)> bytes;

    void* PointerAt(std::size_t offset) const {
        void* pointer = nullptr;
        std::memcpy(&pointer, &bytes[offset], sizeof pointer);
        return pointer;
    }
};

class DestructionTest : public InterfaceTest {};

TEST_F(DestructionTest, DestroyedReaderHasANullTablePointer) {
    table.Add(1, 1, 8).String(4, "Maker");
    Place();
    Storage<SmBios> storage;
    auto* const reader = new (&storage.bytes) SmBios;
    constexpr std::size_t kBiosData = 4;
    EXPECT_NE(storage.PointerAt(kBiosData), nullptr);
    reader->~SmBios();
    EXPECT_EQ(storage.PointerAt(kBiosData), nullptr);
}

TEST_F(DestructionTest, DestroyedItemHasNullBufferPointers) {
    unsigned char structure[] = "\1\5\0\1\1Maker\0";
    Storage<BiosDataItem> storage;
    auto* const item = new (&storage.bytes) BiosDataItem(structure);
    constexpr std::size_t kFormattedData = 4;
    constexpr std::size_t kStringBuffer = 8;
    EXPECT_NE(storage.PointerAt(kFormattedData), nullptr);
    EXPECT_NE(storage.PointerAt(kStringBuffer), nullptr);
    item->~BiosDataItem();
    EXPECT_EQ(storage.PointerAt(kFormattedData), nullptr);
    EXPECT_EQ(storage.PointerAt(kStringBuffer), nullptr);
}

}  // namespace
