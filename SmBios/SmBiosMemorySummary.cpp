// SPDX-License-Identifier: MIT
//
// The summary of the installed memory: total size and one bank entry per populated socket.

#include <algorithm>
#include <array>
#include <cstring>

#include "SmBios/MemoryDevice.h"
#include "SmBios/MemorySize.h"
#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"

using namespace talvane;

namespace {

constexpr std::size_t kModuleInstalledSize = 9;

// Memory device mapped address (7.21).
constexpr std::size_t kStartingAddress = 4;
constexpr std::size_t kEndingAddress = 8;

constexpr int kMostBanks = sizeof(LocalMemInfo::bank) / sizeof(BankInfo);

// Memory types that hold no working memory: ROM, FLASH, EEPROM, FEPROM and EPROM; RDRAM is left out
// with them.
bool IsCounted(unsigned char memoryType) {
    constexpr unsigned char kRom = 8;
    constexpr unsigned char kEprom = 12;
    constexpr unsigned char kRdram = 17;
    return (memoryType < kRom || memoryType > kEprom) && memoryType != kRdram;
}

// The handles of the first memory devices, to be found again in the mapped-address structures.
class DeviceHandles {
public:
    void Add(unsigned short handle) {
        if (count < handles.size()) handles[count++] = handle;
    }
    unsigned CountOf(unsigned short handle) const {
        return static_cast<unsigned>(std::count(handles.begin(), handles.begin() + count, handle));
    }

private:
    std::array<unsigned short, 8> handles{};
    std::size_t count = 0;
};

using SizeText = std::array<char, 32>;

// Kept: not cleared between banks, so a shorter locator after a longer one keeps the longer one's
// tail, and a bank without a locator has that of the bank before.
struct LocatorText {
    char text[64] = {};
};

// The slot that a locator text names: a digit at its end, or a digit with A or B behind it (two
// sockets of a channel, four apart). Later digits count more; 0 without any.
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

// Kept: the total is kept in 16 bits and wraps at 64 GB.
int SmBios::GetMemoryTotalSize() {
    std::uint16_t total = 0;
    const auto add = [&total](std::uint32_t size) {
        total = static_cast<std::uint16_t>(total + size);
    };

    StructureWalk modules = Structures(TYPE_MEMORY_MODULE);
    while (const unsigned char* module = modules.Next()) {
        const ModuleSize size(ByteAt(FormattedAreaOf(module), kModuleInstalledSize));
        if (size.IsKnown()) add(static_cast<std::uint32_t>(size.Megabytes()));
    }
    if (total != 0) return total;

    DeviceHandles handles;
    StructureWalk devices = Structures(TYPE_MEMORY_DEVICE);
    while (const unsigned char* device = devices.Next()) {
        const ByteView area = FormattedAreaOf(device);
        handles.Add(HeaderOf(device).handle);
        if (IsCounted(ByteAt(area, memory_device::kMemoryType)))
            add(static_cast<std::uint32_t>(
                DeviceSize(Le16(area, memory_device::kSize)).Megabytes()));
    }
    if (total != 0) return total;

    // Kept: a mapped-address structure is matched by its own handle, not by the one it refers to.
    StructureWalk mappings = Structures(TYPE_MEMEORY_DEVICE_MAPPED_ADDR);
    while (const unsigned char* mapping = mappings.Next()) {
        const ByteView area = FormattedAreaOf(mapping);
        const std::uint32_t size = Le32(area, kEndingAddress) - Le32(area, kStartingAddress);
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
    for (int i = 0; i < modules && info.quantity < kMostBanks; ++i) {
        const int handle = GetValidMemModuleHandle(i);
        SizeText size{};
        (void)GetMemModuleSize(handle, size.data());  // result not used: the text tells
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
    for (int device = 1; info.quantity < kMostBanks; ++device) {
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

// The words of a device with many type bits are longer than the field and cut to it.
void SmBios::WriteTypeDetail(int device, BankInfo& bank) {
    char words[128] = {};  // all twelve words are 105 characters
    (void)GetMemDevTypeDetail(device, words);
    std::memcpy(bank.TypeDetail, words, sizeof bank.TypeDetail - 1);
}
