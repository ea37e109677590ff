// SPDX-License-Identifier: MIT
//
// The PCI functions as a tree: what is on a bridge's bus is below the bridge.
#ifndef TALVANE_TOOLS_HTML_PCITREE_H
#define TALVANE_TOOLS_HTML_PCITREE_H

#include <string>
#include <vector>

#include "tools/records/Pci.h"

namespace tool {

struct PciNode {
    const PciFunction* function;
    std::vector<PciNode> below;
};

// The functions of a bus, and what is below them.
struct PciRoot {
    int bus;
    std::vector<PciNode> functions;
};

// Bus 0, and each further bus that no bridge leads to. Every function is in the tree once, whatever
// the bridges say. The functions outlive the tree.
std::vector<PciRoot> PciTreeOf(const PciFunctions& functions);

// Lists in lists, which the page's style draws as a tree.
std::string PciTreePicture(const PciFunctions& functions);

}  // namespace tool

#endif
