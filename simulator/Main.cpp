// SPDX-License-Identifier: MIT
//
// talvane-sim: runs a program on a simulated server.

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "Launcher.h"

namespace {

constexpr int kUsageError = 2;  // also a machine or a program that cannot be used

int run(const std::filesystem::path& machine, std::vector<std::string>& command,
        const std::string& logFile) {
    std::vector<char*> argv;
    for (std::string& word : command) argv.push_back(word.data());
    argv.push_back(nullptr);
    try {
        return sim::RunOnMachine(machine, argv.data(), logFile);
    } catch (const std::exception& error) {
        std::cerr << "talvane-sim: " << error.what() << '\n';
        return kUsageError;
    }
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Runs a 32-bit program on a simulated server.", "talvane-sim");
    std::filesystem::path machine;
    std::string logFile;
    std::vector<std::string> command;
    app.add_option("MACHINE", machine, "folder that describes the server")->required();
    app.add_option("--log", logFile, "file to write every access to");
    app.add_option("PROGRAM", command, "program and its arguments, behind --")->required();
    app.positionals_at_end();
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsageError;
    }
    return run(machine, command, logFile);
}
