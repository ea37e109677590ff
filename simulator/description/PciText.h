// SPDX-License-Identifier: MIT
//
// PCI configuration space as `lspci -x`, `-xxx` and `-xxxx` print it.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_PCITEXT_H
#define TALVANE_SIMULATOR_DESCRIPTION_PCITEXT_H

#include <map>
#include <string_view>

#include "simulator/machine/PciBus.h"

namespace sim {

// The functions of domain 0, each with its first 256 bytes: configuration mechanism #1 reaches no
// others. Blank and indented lines, as `lspci -v` adds them, are passed over. std::runtime_error,
// which names the line, for text of another kind.
std::map<PciLocation, Bytes> ReadPciText(std::string_view text);

}  // namespace sim

#endif
