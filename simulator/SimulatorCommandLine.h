// SPDX-License-Identifier: MIT
//
// The command line of talvane-sim.
#ifndef TALVANE_SIMULATOR_SIMULATORCOMMANDLINE_H
#define TALVANE_SIMULATOR_SIMULATORCOMMANDLINE_H

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/Launcher.h"

namespace sim {

struct CommandLine {
    enum class Request { kRun, kHelp, kVersion };
    Request request = Request::kRun;
    std::filesystem::path machine;
    LaunchOptions options;
    std::vector<std::string> command;  // the program and its arguments; not empty with kRun
};

// what() says what is wrong.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A line that asks for help or the version may be wrong otherwise. Throws UsageError.
CommandLine ParseCommandLine(int argc, char* const argv[]);

extern const char* const kHelpText;

}  // namespace sim

#endif
