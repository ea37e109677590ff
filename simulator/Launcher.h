// SPDX-License-Identifier: MIT
//
// Runs a program on a simulated server: with the preload library that answers its calls. Links no
// interposed function, so a program that uses this stays on the real machine itself.
#ifndef TALVANE_SIMULATOR_LAUNCHER_H
#define TALVANE_SIMULATOR_LAUNCHER_H

#include <filesystem>
#include <string>

#include "simulator/description/MachineError.h"

namespace sim {

struct LaunchOptions {
    std::string logFile = {};      // every access is written there; empty for none
    std::string controlFile = {};  // in place of the one that the machine names; empty for that one
    bool realTime = false;         // sleeping takes its time
};

// Replaces this process by argv[0] (looked up in PATH) on the machine described in a folder.
// Returns only by an exception, before anything was replaced: MachineError when the description
// cannot be used, std::system_error when the program cannot be run, std::runtime_error when it
// cannot run simulated (it is no dynamically linked 32-bit x86 program, the preload library is
// missing, or there is a control file and no controller).
[[noreturn]] int RunOnMachine(const std::filesystem::path& machine, char* const argv[],
                              const LaunchOptions& options);

}  // namespace sim

#endif
