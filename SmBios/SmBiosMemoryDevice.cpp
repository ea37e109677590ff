// SPDX-License-Identifier: MIT
//
// Memory devices (SMBIOS 7.18).

#include <cstring>

#include "SmBios/MemoryDevice.h"
#include "SmBios/MemorySize.h"
#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"
#include "base/CodeName.h"

using namespace talvane;

namespace {

constexpr CodeName kMemoryTypes[] = {
    {1, "Other"},  {3, "DRAM"},   {4, "EDRAM"},   {5, "VRAM"},    {6, "SRAM"},   {7, "RAM"},
    {8, "ROM"},    {9, "FLASH"},  {10, "EEPROM"}, {11, "FEPROM"}, {12, "EPROM"}, {13, "CDRAM"},
    {14, "3DRAM"}, {15, "SDRAM"}, {16, "SGRAM"},  {17, "RDRAM"},  {18, "DDR"},
};
static_assert(StrictlyAscending(kMemoryTypes));

const char* MemoryTypeName(unsigned code) {
    return NameOf(kMemoryTypes, code, "Unknown");
}

// Bits 1 to 12 of the type detail (7.18.3).
constexpr const char* kTypeDetails[] = {
    "other",       "Unknown", "Fast-paged", "Static column", "Pseudo-static", "RAMBUS",
    "Synchronous", "CMOS",    "EDO",        "Window DRAM",   "Cache DRAM",    "Non-volatile",
};

bool Contains(const char* text, const char* word) {
    return text != nullptr && std::strstr(text, word) != nullptr;
}

}  // namespace

// The devices describe the memory when the locators of one look like those of a memory bank. Kept:
// a device without a bank locator ends the search.
int SmBios::ExistMemDev() {
    for (int index = 1;; ++index) {
        const ItemPtr device = ItemAt(TYPE_MEMORY_DEVICE, index);
        const char* bank = StringAt(device, memory_device::kBankLocator);
        if (bank == nullptr) return 0;
        const DeviceSize size(Le16(FormattedArea(device), memory_device::kSize));
        const char* locator = StringAt(device, memory_device::kDeviceLocator);
        if (Contains(bank, "Bank") || (Contains(bank, "BANK") && size.HasNumber()) ||
            Contains(locator, "Dimm") || Contains(locator, "DIMM"))
            return 1;
    }
}

int SmBios::GetMemDevManufacturer(int dev, char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_MEMORY_DEVICE, dev), memory_device::kManufacturer, buf, size);
}

int SmBios::GetMemDevSpeed(int dev, char* buf) {
    const ItemPtr device = ItemAt(TYPE_MEMORY_DEVICE, dev);
    const int megahertz = Le16(FormattedArea(device), memory_device::kSpeed);
    if (megahertz == 0) return -1;
    WriteNumber(buf, megahertz, " MHZ");
    return 0;
}

// Kept: an unknown size is written as 32767 KB.
int SmBios::GetMemDevSize(int dev, char* buf) {
    const ItemPtr device = ItemAt(TYPE_MEMORY_DEVICE, dev);
    if (device == nullptr) return -1;
    const DeviceSize size(Le16(FormattedArea(device), memory_device::kSize));
    if (size.IsEmptySocket()) {
        std::strcpy(buf, "No Mem Device");
        return 1;
    }
    if (size.HasNumber()) WriteNumber(buf, size.Number(), size.IsKilobytes() ? " KB" : " MB");
    return 0;
}

int SmBios::GetMemDevSize(int dev) {
    const ItemPtr device = ItemAt(TYPE_MEMORY_DEVICE, dev);
    return DeviceSize(Le16(FormattedArea(device), memory_device::kSize)).Megabytes();
}

int SmBios::GetMemDevType(int dev, char* buf) {
    const ItemPtr device = ItemAt(TYPE_MEMORY_DEVICE, dev);
    if (device == nullptr) return -1;
    std::strcpy(buf, MemoryTypeName(ByteAt(FormattedArea(device), memory_device::kMemoryType)));
    return 0;
}

int SmBios::GetMemDevTypeDetail(int dev, char* buf) {
    const ItemPtr device = ItemAt(TYPE_MEMORY_DEVICE, dev);
    if (device == nullptr) return -1;
    unsigned bits = Le16(FormattedArea(device), memory_device::kTypeDetail) >> 1;
    for (const char* detail : kTypeDetails) {
        if ((bits & 1u) != 0) std::strcat(buf, detail);
        bits >>= 1;
    }
    return 0;
}

// Kept: a locator counts only when it is the first string of its structure.
int SmBios::GetMemDevLocator(int dev, char* buf, unsigned size) {
    const ItemPtr device = ItemAt(TYPE_MEMORY_DEVICE, dev);
    if (ByteAt(FormattedArea(device), memory_device::kDeviceLocator) != kFirstString) return -1;
    return CopyStringAt(device, memory_device::kDeviceLocator, buf, size);
}

// Kept: a device whose locator is not the first string ends the search.
int SmBios::GetProperMemDev(char* locator) {
    if (locator == nullptr) return 0;
    trim(locator);
    for (int index = 1;; ++index) {
        const ItemPtr device = ItemAt(TYPE_MEMORY_DEVICE, index);
        if (ByteAt(FormattedArea(device), memory_device::kDeviceLocator) != kFirstString) return 0;
        char* candidate = StringAt(device, memory_device::kDeviceLocator);
        if (candidate == nullptr) return 0;
        trim(candidate);
        if (std::strcmp(candidate, locator) == 0) return index;
    }
}
