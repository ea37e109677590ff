// SPDX-License-Identifier: MIT
//
// The PCI functions.
#ifndef TALVANE_TOOLS_RECORDS_PCI_H
#define TALVANE_TOOLS_RECORDS_PCI_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"
#include "tools/library/PciNames.h"

namespace tool {

struct PciFunction {
    std::string location;  // "bus:0, dev:31, func:1"
    std::string className;
    std::string subClass;
    int irq;             // 0 for none
    std::uint32_t base;  // first base address register, flag bits included
    int revision;
    std::string status;  // texts that each end with a semicolon
    std::optional<PciId> id = {};
    PciName name = {};                     // empty texts where pci.ids does not have it
    std::optional<int> secondaryBus = {};  // of a bridge to another PCI bus
};

using PciFunctions = std::vector<PciFunction>;

// Nothing when the source cannot be read.
std::optional<PciFunctions> ReadPci();

// "00:1f.1"; the text itself when it is not a location.
std::string PciAddress(const std::string& location);

// "8086:24db", "mem 0xFE9F0000", and "66 MHz Capable; Speed=Medium"; empty for none.
std::string PciIdText(const PciFunction& function);
std::string PciBaseText(const PciFunction& function);
std::string PciStatusText(const PciFunction& function);

std::string ToText(const PciFunctions& functions);
Json ToJson(const PciFunctions& functions);

}  // namespace tool

#endif
