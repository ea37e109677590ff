// SPDX-License-Identifier: MIT
//
// The tree of files that a running system with the hardware of a described machine would show.
#ifndef TALVANE_TESTS_TOOLS_MACHINETREE_H
#define TALVANE_TESTS_TOOLS_MACHINETREE_H

#include <filesystem>

#include "tests/support/HostTree.h"

// Writes the SMBIOS files, the PCI functions and the IDE disks of the machine in `folder`, and the
// load of this system.
void WriteTree(const std::filesystem::path& folder, const HostTree& tree);

#endif
