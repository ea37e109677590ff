// SPDX-License-Identifier: MIT
//
// Offsets in the memory module structure (SMBIOS 7.7).
#ifndef TALVANE_SMBIOS_MEMORYMODULE_H
#define TALVANE_SMBIOS_MEMORYMODULE_H

#include <cstddef>

namespace talvane::memory_module {

constexpr std::size_t kSocketDesignation = 4;  // string
constexpr std::size_t kBankConnections = 5;
constexpr std::size_t kCurrentSpeed = 6;  // ns
constexpr std::size_t kCurrentMemoryType = 7;
constexpr std::size_t kInstalledSize = 9;

}  // namespace talvane::memory_module

#endif
