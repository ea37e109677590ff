// SPDX-License-Identifier: MIT
//
// The program talvane-sim: runs another program on a simulated server.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Launcher.h"

namespace {

constexpr int kUsageError = 2;  // also when the machine or the program cannot be used

// Replaces the usage line, since CLI11 does not see the words after the separator.
class Help : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App*, std::string) const override {
        return "Usage: talvane-sim MACHINE [OPTION...] -- PROGRAM [ARGUMENT...]\n";
    }
};

int RunCommand(const std::filesystem::path& machine, std::vector<std::string>& command,
               const sim::LaunchOptions& options) {
    std::vector<char*> argv;
    for (std::string& word : command) argv.push_back(word.data());
    argv.push_back(nullptr);
    try {
        return sim::RunOnMachine(machine, argv.data(), options);
    } catch (const std::exception& error) {
        std::cerr << "talvane-sim: " << error.what() << '\n';
        return kUsageError;
    }
}

}  // namespace

int main(int argc, char** argv) {
    // Everything after -- belongs to the program, options included.
    char** const end = argv + argc;
    char** const separator = std::find(argv, end, std::string_view("--"));
    std::vector<std::string> command(separator != end ? separator + 1 : end, end);

    CLI::App app("Runs a 32-bit program on a simulated server.", "talvane-sim");
    app.formatter(std::make_shared<Help>());
    std::filesystem::path machine;
    sim::LaunchOptions options;
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return std::string("talvane-sim: ") + error.what() +
               "\nRun talvane-sim --help for its options.\n";
    });
    app.set_version_flag("--version", "talvane-sim " TALVANE_VERSION);
    app.add_option("MACHINE", machine,
                   "folder that describes the server, or the name of an installed one")
        ->type_name("")
        ->required()
        ->check([](const std::string& name) {
            return name.empty() ? "an empty name names no server" : std::string();
        });
    app.add_option("--log", options.logFile, "file to write every access to")->type_name("FILE");
    app.add_option("--control", options.controlFile,
                   "file that changes sensors while the program runs")
        ->type_name("FILE");
    app.add_flag("--real-time", options.realTime,
                 "let sleeps take real time; by default the machine's clock jumps");
    try {
        app.parse(static_cast<int>(separator - argv), argv);
        if (command.empty()) throw CLI::RequiredError("-- PROGRAM");
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsageError;
    }
    return RunCommand(machine, command, options);
}
