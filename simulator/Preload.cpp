// SPDX-License-Identifier: MIT
//
// Puts the process that preloads this library on a simulated server, or on the running system as a
// machine, before its main runs.

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "simulator/Environment.h"
#include "simulator/SimulatedServer.h"
#include "simulator/description/BmcControlFile.h"
#include "simulator/description/MachineFile.h"
#include "simulator/host/HostMachine.h"
#include "simulator/machine/Machine.h"
#include "simulator/machine/Violation.h"
#include "simulator/process/RealFunction.h"

namespace {

// What TalvaneWays answers.
std::string* ways = nullptr;

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
         {sim::kMachineVariable, sim::kHostVariable, sim::kHostDirectVariable,
          sim::kHostChangesVariable, sim::kLogVariable, sim::kControlVariable,
          sim::kRealTimeVariable})
        (void)unsetenv(variable);
}

sim::HostOptions HostOptionsOfEnvironment() {
    sim::HostOptions options{.root = VariableValue(sim::kHostVariable)};
    std::istringstream direct(VariableValue(sim::kHostDirectVariable));
    for (std::string area; std::getline(direct, area, ',');) options.direct.insert(area);
    options.mayChangeBmc = std::getenv(sim::kHostChangesVariable) != nullptr;
    return options;
}

void Build(sim::Machine& machine) {
    if (std::getenv(sim::kHostVariable) != nullptr) {
        sim::NameServer("talvane-host");
        *ways = sim::EncodeWays(sim::BuildHostMachine(HostOptionsOfEnvironment(), machine));
    } else {
        sim::LoadMachine(VariableValue(sim::kMachineVariable), machine);
        *ways = machine.Ways();
    }
}

// The server and its log live as long as the process, so that its last destructors still find them.
// They are static, so that a leak checker finds them in use.
void StartServer() {
    ways = new std::string;
    static auto* const server = new sim::SimulatedServer(Build);
    const std::string controlFile = VariableValue(sim::kControlVariable);
    if (!controlFile.empty()) sim::FollowControlFile(controlFile, server->GetBmc());
    if (std::getenv(sim::kRealTimeVariable) != nullptr)
        server->GetMachine().SleepBy(sim::RealFunction<unsigned(unsigned)>("sleep"));
    const std::string logFile = VariableValue(sim::kLogVariable);
    if (logFile.empty()) return;
    static auto* const log = new std::ofstream(logFile);
    if (!*log) GiveUp(logFile + ": " + std::strerror(errno));
    server->GetLog().CopyTo(log);
}

[[gnu::constructor]] void OnLoad() {
    if (std::getenv(sim::kMachineVariable) == nullptr && std::getenv(sim::kHostVariable) == nullptr)
        return;
    try {
        StartServer();
    } catch (const std::exception& error) {
        GiveUp(error.what());
    }
    LeaveEnvironment();
}

}  // namespace

extern "C" {

// Null where the process is on no server; else how each area of the running system is read, or was
// when a machine was captured, as sim::EncodeWays writes it. Empty for any other machine.
const char* TalvaneWays();
const char* TalvaneWays() {
    return ways != nullptr ? ways->c_str() : nullptr;
}

}  // extern "C"
