// SPDX-License-Identifier: MIT
//
// The names of PCI functions in sysfs.
#ifndef TALVANE_SIMULATOR_HOST_PCIFOLDER_H
#define TALVANE_SIMULATOR_HOST_PCIFOLDER_H

#include <optional>
#include <string_view>

#include "simulator/machine/PciBus.h"

namespace sim {

// The last bus that agents ask for.
inline constexpr unsigned kLastPciBus = 10;

// The function that a name like "0000:00:1f.2" stands for; nothing for one of another domain than
// 0, or one that is no such name.
std::optional<PciLocation> PciLocationOf(std::string_view name);

}  // namespace sim

#endif
