// SPDX-License-Identifier: MIT
//
// Reads PCI configuration space as `lspci -x`, `-xxx` and `-xxxx` print it.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_PCITEXT_H
#define TALVANE_SIMULATOR_DESCRIPTION_PCITEXT_H

#include <map>
#include <string_view>

#include "simulator/machine/PciBus.h"

namespace sim {

// The functions of domain 0, each with its first 256 bytes, since configuration mechanism #1
// reaches nothing else. Blank and indented lines, which `lspci -v` adds, are skipped.
// std::runtime_error, which names the line, for any other text.
std::map<PciLocation, Bytes> ReadPciText(std::string_view text);

}  // namespace sim

#endif
