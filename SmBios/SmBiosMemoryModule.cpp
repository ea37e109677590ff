// SPDX-License-Identifier: MIT
//
// Memory modules (7.7) and the memory controller (7.6) that lists them: the older way in which
// firmware describes memory.

#include <cstring>
#include <iterator>

#include "SmBios/MemorySize.h"
#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"

using namespace talvane;

namespace {

// Memory controller.
constexpr std::size_t kSlotCount = 14;
constexpr std::size_t kFirstSlotHandle = 15;

// Memory module.
constexpr std::size_t kSocketDesignation = 4;
constexpr std::size_t kBankConnections = 5;
constexpr std::size_t kSpeed = 6;  // ns
constexpr std::size_t kType = 7;
constexpr std::size_t kInstalledSize = 9;

// Modules beyond these are not reached through the controller.
constexpr int kHighestHandle = 127;

// Bits 0 to 10 of the type (7.7.1).
constexpr const char* kTypes[] = {
    "other", "Unknown", "Standard", "Fast Page Mode", "EDO",    "Parity",
    "ECC",   "SIMM",    "DIMM",     " Burst EDO",     " SDRAM",
};

int SlotHandle(ByteView controller, int slot) {
    return Le16(controller, kFirstSlotHandle + 2 * static_cast<std::size_t>(slot));
}

}  // namespace

int SmBios::ExistMemCtl() {
    return ItemAt(TYPE_MEMORY_CONTROLLER, 1) != nullptr ? 1 : 0;
}

// 0 as soon as one slot has no handle.
int SmBios::ExistMemModule() {
    const ItemPtr controller = ItemAt(TYPE_MEMORY_CONTROLLER, 1);
    const ByteView area = FormattedArea(controller);
    const int slots = ByteAt(area, kSlotCount);
    if (slots == 0) return 0;
    for (int slot = 0; slot < slots; ++slot)
        if (SlotHandle(area, slot) == 0) return 0;
    return 1;
}

int SmBios::GetValidMemModuleHandle(int i) {
    const ItemPtr controller = ItemAt(TYPE_MEMORY_CONTROLLER, 1);
    const ByteView area = FormattedArea(controller);
    if (i < 0 || i >= ByteAt(area, kSlotCount)) return 0;
    const int handle = SlotHandle(area, i);
    return handle <= kHighestHandle ? handle : 0;
}

int SmBios::GetMemModuleQuantity() {
    int quantity = 0;
    while (GetValidMemModuleHandle(quantity) != 0) ++quantity;
    return quantity;
}

SmBios::ItemPtr SmBios::Module(int handle) const {
    if (handle == 0) return nullptr;
    return ItemWithHandle(static_cast<unsigned>(handle), Structures(TYPE_MEMORY_MODULE));
}

// A module without a size writes nothing and answers 0.
int SmBios::GetMemModuleSize(int handle, char* buf) {
    const ItemPtr module = Module(handle);
    if (module == nullptr) return -1;
    const ModuleSize size(ByteAt(FormattedArea(module), kInstalledSize));
    if (size.IsKnown()) WriteNumber(buf, size.Megabytes(), " MB");
    return 0;
}

int SmBios::GetMemModuleSpeed(int handle, char* buf) {
    const ItemPtr module = Module(handle);
    const int nanoseconds = ByteAt(FormattedArea(module), kSpeed);
    if (nanoseconds == 0) return -1;
    WriteNumber(buf, nanoseconds, " ns");
    return 0;
}

// The highest set bit decides; without one nothing is written.
int SmBios::GetMemModuleType(int handle, char* buf) {
    const ItemPtr module = Module(handle);
    if (module == nullptr) return -1;
    const unsigned bits = Le16(FormattedArea(module), kType);
    for (std::size_t bit = std::size(kTypes); bit-- > 0;) {
        if ((bits & (1u << bit)) == 0) continue;
        std::strcpy(buf, kTypes[bit]);
        break;
    }
    return 0;
}

int SmBios::GetMemBankConnector(int handle) {
    const ItemPtr module = Module(handle);
    return module == nullptr ? -1 : ByteAt(FormattedArea(module), kBankConnections);
}

// Kept: a designation counts only when it is the first string of its structure.
int SmBios::GetMemModuleLocate(int handle, char* buf, unsigned size) {
    const ItemPtr module = Module(handle);
    if (ByteAt(FormattedArea(module), kSocketDesignation) != 1) return -1;
    return CopyStringAt(module, kSocketDesignation, buf, size);
}
