// SPDX-License-Identifier: MIT
//
// Puts the process that preloads this library on a simulated server before its main runs.

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "simulator/Environment.h"
#include "simulator/SimulatedServer.h"
#include "simulator/description/BmcControlFile.h"
#include "simulator/machine/Machine.h"
#include "simulator/process/RealFunction.h"

namespace {

// Uses C streams: std::cerr may not be initialised yet.
[[noreturn]] void GiveUp(const std::string& why) {
    (void)std::fprintf(stderr, "simulated server: %s\n", why.c_str());
    _exit(2);
}

// The variable's value; empty when it is not set.
std::string VariableValue(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr ? value : "";
}

// Takes this library, the first in its list, out of the environment, so that children of the
// program run on the real machine.
void LeaveEnvironment() {
    const char* const list = std::getenv(sim::kPreloadVariable);
    const std::string preloaded = list != nullptr ? list : "";
    const std::size_t rest = preloaded.find_first_of(": ");
    if (rest == std::string::npos)
        (void)unsetenv(sim::kPreloadVariable);
    else
        (void)setenv(sim::kPreloadVariable, preloaded.c_str() + rest + 1, 1);
    for (const char* const variable :
         {sim::kMachineVariable, sim::kLogVariable, sim::kControlVariable, sim::kRealTimeVariable})
        (void)unsetenv(variable);
}

// The server and its log live as long as the process, so that its last destructors still find them.
// They are static, so that a leak checker finds them in use.
void StartServer(const std::string& machine, const std::string& logFile,
                 const std::string& controlFile) {
    static auto* const server = new sim::SimulatedServer(machine);
    if (!controlFile.empty()) sim::FollowControlFile(controlFile, server->GetBmc());
    if (std::getenv(sim::kRealTimeVariable) != nullptr)
        server->GetMachine().SleepBy(sim::RealFunction<unsigned(unsigned)>("sleep"));
    if (logFile.empty()) return;
    static auto* const log = new std::ofstream(logFile);
    if (!*log) GiveUp(logFile + ": " + std::strerror(errno));
    server->GetLog().CopyTo(log);
}

[[gnu::constructor]] void OnLoad() {
    const char* const machine = std::getenv(sim::kMachineVariable);
    if (machine == nullptr) return;
    try {
        StartServer(machine, VariableValue(sim::kLogVariable),
                    VariableValue(sim::kControlVariable));
    } catch (const std::exception& error) {
        GiveUp(error.what());
    }
    LeaveEnvironment();
}

}  // namespace
