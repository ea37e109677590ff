// SPDX-License-Identifier: MIT
//
// The ways in which the areas of this machine were read, for people.
#ifndef TALVANE_TOOLS_BASE_WAYFACTS_H
#define TALVANE_TOOLS_BASE_WAYFACTS_H

#include <vector>

#include "tools/base/Layout.h"
#include "tools/base/Way.h"

namespace tool {

// Each area with what it was read from: {"PCI", "/sys/bus/pci/devices, through the kernel"}.
std::vector<Fact> WayFacts(const std::vector<Way>& ways);

}  // namespace tool

#endif
