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

#include "Environment.h"
#include "SimulatedServer.h"

namespace {

// By C means: std::cerr need not be there yet.
[[noreturn]] void giveUp(const std::string& why) {
    (void)std::fprintf(stderr, "simulated server: %s\n", why.c_str());
    _exit(2);
}

// Children of the program run on the real machine: takes this library out of their environment.
// It stands first in the list.
void leaveEnvironment() {
    const char* const list = std::getenv(sim::kPreloadVariable);
    const std::string preloaded = list != nullptr ? list : "";
    const std::size_t rest = preloaded.find_first_of(": ");
    if (rest == std::string::npos)
        (void)unsetenv(sim::kPreloadVariable);
    else
        (void)setenv(sim::kPreloadVariable, preloaded.c_str() + rest + 1, 1);
    (void)unsetenv(sim::kMachineVariable);
    (void)unsetenv(sim::kLogVariable);
}

// The server and its log last as long as the process, through its last destructor. Static, so that
// a leak checker finds them in use.
void start(const std::string& machine, const std::string& logFile) {
    static auto* const server = new sim::SimulatedServer(machine);
    if (logFile.empty()) return;
    static auto* const log = new std::ofstream(logFile);
    if (!*log) giveUp(logFile + ": " + std::strerror(errno));
    server->log().copyTo(log);
}

[[gnu::constructor]] void onLoad() {
    const char* const machine = std::getenv(sim::kMachineVariable);
    if (machine == nullptr) return;
    const char* const log = std::getenv(sim::kLogVariable);
    try {
        start(machine, log != nullptr ? log : "");
    } catch (const std::exception& error) {
        giveUp(error.what());
    }
    leaveEnvironment();
}

}  // namespace
