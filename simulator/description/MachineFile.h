// SPDX-License-Identifier: MIT
//
// Loads a machine from a folder or from an archive of one: machine.txt and the captures that it
// names. docs/machine-format.md defines the format.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_MACHINEFILE_H
#define TALVANE_SIMULATOR_DESCRIPTION_MACHINEFILE_H

#include <filesystem>

#include "simulator/description/MachineError.h"

namespace sim {

class Machine;

// Turns a new machine into the one that the folder or archive describes. Throws MachineError, which
// names file and line, when the description cannot be used.
void LoadMachine(const std::filesystem::path& place, Machine& machine);

}  // namespace sim

#endif
