// SPDX-License-Identifier: MIT
//
// Offsets in the memory device structure (SMBIOS 7.18).
#ifndef TALVANE_SMBIOS_MEMORYDEVICE_H
#define TALVANE_SMBIOS_MEMORYDEVICE_H

#include <cstddef>

namespace talvane::memory_device {

constexpr std::size_t kSize = 12;
constexpr std::size_t kDeviceLocator = 16;  // string
constexpr std::size_t kBankLocator = 17;    // string
constexpr std::size_t kMemoryType = 18;
constexpr std::size_t kTypeDetail = 19;
constexpr std::size_t kSpeed = 21;         // MHz
constexpr std::size_t kManufacturer = 23;  // string

}  // namespace talvane::memory_device

#endif
