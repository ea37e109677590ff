// SPDX-License-Identifier: MIT
//
// Runs a program on a simulated server, or on the running system as a machine, with the preload
// library that answers its calls. This code links no interposed function, so the program that uses
// it stays on the real machine.
#ifndef TALVANE_SIMULATOR_LAUNCHER_H
#define TALVANE_SIMULATOR_LAUNCHER_H

#include <filesystem>
#include <string>

#include "simulator/description/MachineError.h"
#include "simulator/host/HostMachine.h"

namespace sim {

struct LaunchOptions {
    std::string logFile = {};      // every access is written to it; empty: no log
    std::string controlFile = {};  // replaces the machine's own; empty: it does not
    bool realTime = false;         // a sleep takes real time
};

// Replaces this process by the program argv[0] (looked up in PATH), on the machine that a folder
// or an archive of one describes. A bare name that is nothing here is that of an installed machine.
// Returns only by an exception, and then this process is unchanged:
// - MachineError: the description cannot be used.
// - std::system_error: the program cannot be run.
// - std::runtime_error: the program cannot run simulated, because it is not a dynamically linked
//   32-bit x86 program, the preload library is missing, or there is a control file but no
//   controller.
[[noreturn]] int RunOnMachine(const std::filesystem::path& nameOrFolder, char* const argv[],
                              const LaunchOptions& options);

// Replaces this process by the program argv[0], on the running system as a machine. Exceptions as
// above, but for MachineError.
[[noreturn]] int RunOnHost(char* const argv[], const HostOptions& host,
                           const LaunchOptions& options);

// How each area of the running system would be read.
std::vector<AreaWay> SurveyHost(const HostOptions& options);

}  // namespace sim

#endif
