// SPDX-License-Identifier: MIT
//
// talvane: shows what libTalvane reads, as an agent that uses nothing but its C interface.

#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/Launcher.h"
#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/Report.h"

namespace {

// Starts the tool anew with the same command, inside the simulated server.
[[noreturn]] void RunOnSimulatedServer(const tool::Options& options) {
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    std::vector<std::string> arguments{self, options.command};
    if (options.format == tool::Format::json) arguments.push_back("--json");
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    sim::RunOnMachine(options.machine, argv.data(), "");
}

int RunHere(const tool::Options& options) {
    bool allRead = false;
    if (options.command == tool::kReport) {
        allRead = tool::Report(tool::Commands(), options.format, std::cout, std::cerr);
    } else {
        for (const tool::Command& command : tool::Commands())
            if (options.command == command.name)
                allRead = tool::Report({&command, 1}, options.format, std::cout, std::cerr);
    }
    if (!std::cout.flush()) throw std::runtime_error("cannot write to standard output");
    return allRead ? tool::kAllRead : tool::kSourceMissing;
}

}  // namespace

int main(int argc, char* argv[]) {
    try {
        const auto parsed = tool::ParseCommandLine(argc, argv);
        if (const int* status = std::get_if<int>(&parsed)) return *status;
        const auto& options = std::get<tool::Options>(parsed);
        if (!options.machine.empty()) RunOnSimulatedServer(options);
        return RunHere(options);
    } catch (const std::exception& error) {
        std::cerr << "talvane: " << error.what() << '\n';
        return tool::kFailure;
    }
}
