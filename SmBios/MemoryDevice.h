// SPDX-License-Identifier: MIT
//
// Offsets in the memory device structure (7.18).
#ifndef TALVANE_SMBIOS_MEMORYDEVICE_H
#define TALVANE_SMBIOS_MEMORYDEVICE_H

#include <cstddef>

namespace memory_device {

constexpr std::size_t kSize = 12;
constexpr std::size_t kDeviceLocator = 16;
constexpr std::size_t kBankLocator = 17;
constexpr std::size_t kMemoryType = 18;
constexpr std::size_t kTypeDetail = 19;
constexpr std::size_t kSpeed = 21;
constexpr std::size_t kManufacturer = 23;

}  // namespace memory_device

#endif
