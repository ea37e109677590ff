// SPDX-License-Identifier: MIT
//
// Machines described in a folder: machine.txt and the captures that it names. The format is
// defined in docs/machine-format.md.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_MACHINEFILE_H
#define TALVANE_SIMULATOR_DESCRIPTION_MACHINEFILE_H

#include <filesystem>

#include "simulator/description/MachineError.h"

namespace sim {

class Machine;

// Makes a fresh machine the described one. Throws MachineError, naming file and line, when the
// description cannot be used.
void LoadMachine(const std::filesystem::path& folder, Machine& machine);

}  // namespace sim

#endif
