// SPDX-License-Identifier: MIT
//
// talvane: shows what libTalvane reads. It uses the C interface as an agent does, and the library's
// classes where the C interface does not offer enough.

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "simulator/Launcher.h"
#include "tools/CommandLine.h"
#include "tools/Run.h"
#include "tools/Ways.h"

namespace {

// Starts the tool anew with the same command, inside the simulated server.
[[noreturn]] void RunOnSimulatedServer(const tool::Options& options) {
    std::vector<std::string> line{std::filesystem::read_symlink("/proc/self/exe")};
    line.insert(line.end(), options.arguments.begin(), options.arguments.end());
    std::vector<char*> argv;
    for (std::string& argument : line) argv.push_back(argument.data());
    argv.push_back(nullptr);
    // A person watches a repetition without end, so that it runs in real time.
    const bool isEndless = options.watch.seconds != 0 && options.watch.count == 0;
    sim::RunOnMachine(options.machine, argv.data(), {.realTime = isEndless});
}

}  // namespace

int main(int argc, char* argv[]) {
    int failure = tool::kFailure;
    try {
        const auto parsed = tool::ParseCommandLine(argc, argv);
        if (const int* status = std::get_if<int>(&parsed)) return *status;
        auto options = std::get<tool::Options>(parsed);
        if (options.command == tool::kHealth) failure = tool::kHealthUnknown;
        if (!options.machine.empty()) RunOnSimulatedServer(options);
        options.settings.ways = tool::WaysOrRestart(options);
        return tool::Run(options);
    } catch (const std::exception& error) {
        std::cerr << "talvane: " << error.what() << '\n';
        return failure;
    }
}
