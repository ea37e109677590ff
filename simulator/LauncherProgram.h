// SPDX-License-Identifier: MIT
//
// What the programs talvane-sim and talvane-host have in common: a command line of options, a
// separator, and the program to run with its arguments.
#ifndef TALVANE_SIMULATOR_LAUNCHERPROGRAM_H
#define TALVANE_SIMULATOR_LAUNCHERPROGRAM_H

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace sim {

// An option without a value sets `isGiven`, one with a value keeps it in `value`.
struct LauncherOption {
    const char* name;  // without the dashes
    bool* isGiven = nullptr;
    std::string* value = nullptr;
    const char* valueName = nullptr;  // in complaints, "FILE"
};

struct LauncherProgram {
    const char* name;
    const char* helpText;
    std::vector<LauncherOption> options;  // besides --help, -h and --version
    std::string* machine;  // for the one word that is no option; nullptr where there is none
    // Starts the program with these arguments, which end with a null pointer. Returns the status.
    std::function<int(char* const argv[])> run;
};

// A command line that cannot be understood; what() says why. run() may throw it, too.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Answers --help and --version, or parses the line, then runs the program. Returns what run()
// returns; or 2, with a complaint on standard error, for a usage error and for whatever run()
// throws. A line that asks for help or the version may be wrong otherwise.
int RunLauncher(const LauncherProgram& program, int argc, char* argv[]);

}  // namespace sim

#endif
