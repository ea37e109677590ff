// SPDX-License-Identifier: MIT
//
// The names of PCI vendors and devices, from the list pci.ids that Linux distributions install.
#ifndef TALVANE_TOOLS_LIBRARY_PCINAMES_H
#define TALVANE_TOOLS_LIBRARY_PCINAMES_H

#include <istream>
#include <map>
#include <set>
#include <string>

namespace tool {

struct PciId {
    int vendor = 0;
    int device = 0;
    auto operator<=>(const PciId&) const = default;
};

struct PciName {
    std::string vendor;
    std::string device;
    bool operator==(const PciName&) const = default;
};

// The names of those of these functions that the list has. A device that it does not have has an
// empty name. Lines that are not of the list's form are passed over.
std::map<PciId, PciName> PciNamesIn(std::istream& list, const std::set<PciId>& ids);

// The same from this system's list: the file that the environment variable TALVANE_PCI_IDS names,
// or the first that there is of those that distributions install. None where no list can be read.
std::map<PciId, PciName> KnownPciNames(const std::set<PciId>& ids);

}  // namespace tool

#endif
