// SPDX-License-Identifier: MIT
//
// The program talvane-sim: runs another program on a simulated server.

#include <string>

#include "simulator/Launcher.h"
#include "simulator/LauncherProgram.h"

namespace {

constexpr const char* kHelpText =
    "Runs a 32-bit program on a simulated server.\n"
    "Usage: talvane-sim MACHINE [OPTION...] -- PROGRAM [ARGUMENT...]\n"
    "\n"
    "Positionals:\n"
    "  MACHINE REQUIRED  folder that describes the server, a capture, or the name of an installed "
    "one\n"
    "\n"
    "Options:\n"
    "  -h,--help         Print this help message and exit\n"
    "  --version         Display program version information and exit\n"
    "  --log FILE        file to write every access to\n"
    "  --control FILE    file that changes sensors while the program runs\n"
    "  --real-time       let sleeps take real time; by default the machine's clock jumps\n";

}  // namespace

int main(int argc, char* argv[]) {
    std::string machine;
    sim::LaunchOptions options;
    const sim::LauncherProgram program{
        .name = "talvane-sim",
        .helpText = kHelpText,
        .options = {{.name = "log", .value = &options.logFile, .valueName = "FILE"},
                    {.name = "control", .value = &options.controlFile, .valueName = "FILE"},
                    {.name = "real-time", .isGiven = &options.realTime}},
        .machine = &machine,
        .run = [&](char* const command[]) { return sim::RunOnMachine(machine, command, options); }};
    return sim::RunLauncher(program, argc, argv);
}
