// SPDX-License-Identifier: MIT
//
// The summary of the installed memory: total size and one bank entry per populated socket.

#include <algorithm>
#include <array>
#include <cstring>

#include "SmBios/MemoryDevice.h"
#include "SmBios/MemoryModule.h"
#include "SmBios/MemorySize.h"
#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"

using namespace talvane;

namespace {

// Offsets in the memory device mapped address structure (SMBIOS 7.21).
namespace mapped_address {
constexpr std::size_t kStartingAddress = 4;
constexpr std::size_t kEndingAddress = 8;
}  // namespace mapped_address

constexpr int kMaxBanks = sizeof(LocalMemInfo::bank) / sizeof(BankInfo);

// ROM, FLASH, EEPROM, FEPROM and EPROM are no working memory. Kept: RDRAM is left out with them.
bool CountsAsMemory(unsigned char memoryType) {
    constexpr unsigned char kRom = 8;     // the first of the five types in a row
    constexpr unsigned char kEprom = 12;  // the last
    constexpr unsigned char kRdram = 17;
    return (memoryType < kRom || memoryType > kEprom) && memoryType != kRdram;
}

// The handles of the first eight memory devices, with which the mapped addresses are compared.
class DeviceHandles {
public:
    void Add(unsigned short handle) {
        if (count_ < handles_.size()) handles_[count_++] = handle;
    }
    unsigned CountOf(unsigned short handle) const {
        return static_cast<unsigned>(
            std::count(handles_.begin(), handles_.begin() + count_, handle));
    }

private:
    std::array<unsigned short, 8> handles_{};
    std::size_t count_ = 0;
};

using SizeText = std::array<char, 32>;

// Kept: it is not cleared between banks, so a shorter locator after a longer one keeps the longer
// one's tail, and a bank without a locator has the locator of the bank before.
struct LocatorText {
    char text[64] = {};
};

// The number of the slot that a locator text names: its last character as a digit, or a digit
// before an A or a B, which name two sockets of a channel and give 4 times the digit plus 1 or 2.
// The last such digit decides; without one the number is 0.
int SlotNumberOf(const char* locator) {
    int slot = 0;
    for (; *locator != '\0'; ++locator) {
        if (*locator < '0' || *locator > '9') continue;
        const int digit = *locator - '0';
        switch (locator[1]) {
            case '\0':
                slot = digit;
                break;
            case 'A':
                slot = 4 * digit + 1;
                break;
            case 'B':
                slot = 4 * digit + 2;
                break;
            default:
                break;
        }
    }
    return slot;
}

}  // namespace

// Kept: the total has 16 bits and wraps around at 64 GB.
int SmBios::GetMemoryTotalSize() {
    std::uint16_t total = 0;
    const auto add = [&total](std::uint32_t size) {
        total = static_cast<std::uint16_t>(total + size);
    };

    StructureWalk modules = Structures(TYPE_MEMORY_MODULE);
    while (const unsigned char* module = modules.Next()) {
        const ModuleSize size(ByteAt(FormattedAreaOf(module), memory_module::kInstalledSize));
        if (size.IsKnown()) add(static_cast<std::uint32_t>(size.Megabytes()));
    }
    if (total != 0) return total;

    DeviceHandles handles;
    StructureWalk devices = Structures(TYPE_MEMORY_DEVICE);
    while (const unsigned char* device = devices.Next()) {
        const ByteView area = FormattedAreaOf(device);
        handles.Add(HeaderOf(device).handle);
        if (CountsAsMemory(ByteAt(area, memory_device::kMemoryType)))
            add(static_cast<std::uint32_t>(
                DeviceSize(Le16(area, memory_device::kSize)).Megabytes()));
    }
    if (total != 0) return total;

    // Kept: a mapped address is matched by its structure's own handle, not by the device's handle
    // that it states.
    StructureWalk mappings = Structures(TYPE_MEMEORY_DEVICE_MAPPED_ADDR);
    while (const unsigned char* mapping = mappings.Next()) {
        const ByteView area = FormattedAreaOf(mapping);
        const std::uint32_t size = Le32(area, mapped_address::kEndingAddress) -
                                   Le32(area, mapped_address::kStartingAddress);
        add(size * handles.CountOf(HeaderOf(mapping).handle));
    }
    return total;
}

int SmBios::GetMemoryInformation(LocalMemInfo* info) {
    if (info == nullptr) return -1;
    *info = {};
    if (ExistMemCtl() != 0 && ExistMemModule() != 0) {
        SummariseModules(*info);
    } else if (ExistMemDev() != 0) {
        SummariseDevices(*info);
    } else {
        info->TotalSize = GetMemoryTotalSize();
        return -1;
    }
    info->TotalSize = GetMemoryTotalSize();
    return 0;
}

void SmBios::SummariseModules(LocalMemInfo& info) {
    LocatorText locator;
    const int modules = GetMemModuleQuantity();
    for (int i = 0; i < modules && info.quantity < kMaxBanks; ++i) {
        const int handle = GetValidMemModuleHandle(i);
        SizeText size{};
        (void)GetMemModuleSize(handle, size.data());  // result not used: the text says enough
        if (size[0] == '\0') continue;

        BankInfo& bank = info.bank[info.quantity++];
        std::strcpy(bank.size, size.data());
        (void)GetMemModuleType(handle, bank.type);
        (void)GetMemModuleSpeed(handle, bank.speed);
        (void)GetMemModuleLocate(handle, locator.text, sizeof locator.text);
        bank.SlotNumber = SlotNumberOf(locator.text);

        if (ExistMemDev() == 0) continue;
        const int device = GetProperMemDev(locator.text);
        if (device == 0) continue;
        WriteTypeDetail(device, bank);
        (void)GetMemDevManufacturer(device, bank.manufacturer, sizeof bank.manufacturer);
    }
}

void SmBios::SummariseDevices(LocalMemInfo& info) {
    constexpr int kEmptySocket = 1;
    LocatorText locator;
    for (int device = 1; info.quantity < kMaxBanks; ++device) {
        SizeText size{};
        const int found = GetMemDevSize(device, size.data());
        if (found == -1) return;
        if (found == kEmptySocket) continue;

        BankInfo& bank = info.bank[info.quantity++];
        std::strcpy(bank.size, size.data());
        (void)GetMemDevType(device, bank.type);
        WriteTypeDetail(device, bank);
        (void)GetMemDevSpeed(device, bank.speed);
        (void)GetMemDevManufacturer(device, bank.manufacturer, sizeof bank.manufacturer);
        (void)GetMemDevLocator(device, locator.text, sizeof locator.text);
        trim(locator.text);
        bank.SlotNumber = SlotNumberOf(locator.text);
    }
}

// The words of a device with many type bits do not fit the field and are cut to it.
void SmBios::WriteTypeDetail(int device, BankInfo& bank) {
    char words[128] = {};  // all twelve words have 105 characters
    (void)GetMemDevTypeDetail(device, words);
    std::memcpy(bank.TypeDetail, words, sizeof bank.TypeDetail - 1);
}
