// SPDX-License-Identifier: MIT
//
// The SMBIOS table as the kernel gives it: an entry point and a table, in two files.
#ifndef TALVANE_SIMULATOR_HOST_SMBIOSFILES_H
#define TALVANE_SIMULATOR_HOST_SMBIOSFILES_H

#include <span>

#include "simulator/base/Bytes.h"

namespace sim {

// The longest table that an entry point in the BIOS segment can state, in 16 bits.
inline constexpr std::size_t kMaxSmbiosTable = 0xFFFF;

// The first `limit` bytes of the table without the structure that they cut. A table that is not
// longer is returned whole.
std::span<const std::uint8_t> WholeStructures(std::span<const std::uint8_t> table,
                                              std::size_t limit);

// The two files as one dump, whose table follows its entry point at offset 32, as dmidecode writes
// it. std::runtime_error when the entry point is none of _SM_, _SM3_ and _DMI_.
Bytes SmbiosDump(const Bytes& entryPoint, std::span<const std::uint8_t> table);

}  // namespace sim

#endif
