// SPDX-License-Identifier: MIT
//
// Memory modules (SMBIOS 7.7) and the memory controller (7.6) that lists them: the older way in
// which firmware describes memory.

#include <cstring>
#include <iterator>

#include "SmBios/MemoryModule.h"
#include "SmBios/MemorySize.h"
#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"

using namespace talvane;

namespace {

// Offsets in the memory controller structure.
namespace memory_controller {
constexpr std::size_t kSlotCount = 14;
constexpr std::size_t kFirstSlotHandle = 15;
constexpr std::size_t kSlotHandleSize = 2;
}  // namespace memory_controller

// Kept: a slot with a higher handle counts as empty.
constexpr int kMaxModuleHandle = 127;

// Bits 0 to 10 of the memory type (7.7.1).
constexpr const char* kModuleTypes[] = {
    "other", "Unknown", "Standard", "Fast Page Mode", "EDO",    "Parity",
    "ECC",   "SIMM",    "DIMM",     " Burst EDO",     " SDRAM",
};

int SlotHandle(ByteView controller, int slot) {
    using namespace memory_controller;
    return Le16(controller, kFirstSlotHandle + kSlotHandleSize * static_cast<std::size_t>(slot));
}

}  // namespace

int SmBios::ExistMemCtl() {
    return ItemAt(TYPE_MEMORY_CONTROLLER, 1) != nullptr ? 1 : 0;
}

// Answers 0 as soon as one slot has no handle.
int SmBios::ExistMemModule() {
    const ItemPtr controller = ItemAt(TYPE_MEMORY_CONTROLLER, 1);
    const ByteView area = FormattedArea(controller);
    const int slots = ByteAt(area, memory_controller::kSlotCount);
    if (slots == 0) return 0;
    for (int slot = 0; slot < slots; ++slot)
        if (SlotHandle(area, slot) == 0) return 0;
    return 1;
}

int SmBios::GetValidMemModuleHandle(int i) {
    const ItemPtr controller = ItemAt(TYPE_MEMORY_CONTROLLER, 1);
    const ByteView area = FormattedArea(controller);
    if (i < 0 || i >= ByteAt(area, memory_controller::kSlotCount)) return 0;
    const int handle = SlotHandle(area, i);
    return handle <= kMaxModuleHandle ? handle : 0;
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
    const ModuleSize size(ByteAt(FormattedArea(module), memory_module::kInstalledSize));
    if (size.IsKnown()) WriteNumber(buf, size.Megabytes(), " MB");
    return 0;
}

int SmBios::GetMemModuleSpeed(int handle, char* buf) {
    const ItemPtr module = Module(handle);
    const int nanoseconds = ByteAt(FormattedArea(module), memory_module::kCurrentSpeed);
    if (nanoseconds == 0) return -1;
    WriteNumber(buf, nanoseconds, " ns");
    return 0;
}

// The highest set bit decides. Without a set bit nothing is written.
int SmBios::GetMemModuleType(int handle, char* buf) {
    const ItemPtr module = Module(handle);
    if (module == nullptr) return -1;
    const unsigned bits = Le16(FormattedArea(module), memory_module::kCurrentMemoryType);
    for (std::size_t bit = std::size(kModuleTypes); bit-- > 0;) {
        if ((bits & (1u << bit)) == 0) continue;
        std::strcpy(buf, kModuleTypes[bit]);
        break;
    }
    return 0;
}

int SmBios::GetMemBankConnector(int handle) {
    const ItemPtr module = Module(handle);
    return module == nullptr ? -1 : ByteAt(FormattedArea(module), memory_module::kBankConnections);
}

// Kept: a designation counts only when it is the first string of its structure.
int SmBios::GetMemModuleLocate(int handle, char* buf, unsigned size) {
    const ItemPtr module = Module(handle);
    if (ByteAt(FormattedArea(module), memory_module::kSocketDesignation) != kFirstString) return -1;
    return CopyStringAt(module, memory_module::kSocketDesignation, buf, size);
}
