// SPDX-License-Identifier: MIT
//
// The program talvane-sim: runs another program on a simulated server.

#include <cstdio>
#include <string>
#include <vector>

#include "simulator/Launcher.h"
#include "simulator/SimulatorCommandLine.h"

namespace {

constexpr int kFailure = 2;  // a usage error, or the machine or the program cannot be used

void Complain(const std::string& problem) {
    (void)std::fprintf(stderr, "talvane-sim: %s\n", problem.c_str());
}

int Print(const char* text) {
    if (std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0) return 0;
    Complain("cannot write to standard output");
    return kFailure;
}

int RunCommand(sim::CommandLine& line) {
    std::vector<char*> argv;
    for (std::string& word : line.command) argv.push_back(word.data());
    argv.push_back(nullptr);
    return sim::RunOnMachine(line.machine, argv.data(), line.options);
}

}  // namespace

int main(int argc, char* argv[]) {
    using Request = sim::CommandLine::Request;
    try {
        sim::CommandLine line = sim::ParseCommandLine(argc, argv);
        if (line.request == Request::kHelp) return Print(sim::kHelpText);
        if (line.request == Request::kVersion) return Print("talvane-sim " TALVANE_VERSION "\n");
        return RunCommand(line);
    } catch (const sim::UsageError& error) {
        Complain(error.what() + std::string("\nRun talvane-sim --help for its options."));
    } catch (const std::exception& error) {
        Complain(error.what());
    }
    return kFailure;
}
