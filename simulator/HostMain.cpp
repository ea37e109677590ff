// SPDX-License-Identifier: MIT
//
// The program talvane-host: runs another program on this machine, with what the library asks for
// answered through the interfaces of today's kernels.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Launcher.h"

namespace {

constexpr int kUsageError = 2;  // also when the program cannot be used

// Replaces the usage line, since CLI11 does not see the words after the separator.
class Help : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App*, std::string) const override {
        return "Usage: talvane-host [OPTION...] -- PROGRAM [ARGUMENT...]\n";
    }
};

// The program itself cannot tell why it finds something missing.
void ShowProblems(const std::vector<sim::AreaWay>& ways) {
    for (const sim::AreaWay& way : ways)
        for (const std::string* problem : {&way.problem, &way.whyUnopened})
            if (!problem->empty()) std::cerr << "talvane-host: " << *problem << '\n';
}

void ShowWays(const std::vector<sim::AreaWay>& ways) {
    for (const sim::AreaWay& way : ways) {
        std::cerr << "talvane-host: " << way.area << ": " << way.from;
        if (!way.note.empty()) std::cerr << " (" << way.note << ')';
        if (!way.problem.empty()) std::cerr << ": not read";
        std::cerr << '\n';
    }
}

int RunCommand(std::vector<std::string>& command, const sim::HostOptions& host,
               const sim::LaunchOptions& options, bool isVerbose) {
    std::vector<char*> argv;
    for (std::string& word : command) argv.push_back(word.data());
    argv.push_back(nullptr);
    try {
        const std::vector<sim::AreaWay> ways = sim::SurveyHost(host);
        if (isVerbose) ShowWays(ways);
        ShowProblems(ways);
        return sim::RunOnHost(argv.data(), host, options);
    } catch (const std::exception& error) {
        std::cerr << "talvane-host: " << error.what() << '\n';
        return kUsageError;
    }
}

}  // namespace

int main(int argc, char** argv) {
    // Everything after -- belongs to the program, options included.
    char** const end = argv + argc;
    char** const separator = std::find(argv, end, std::string_view("--"));
    std::vector<std::string> command(separator != end ? separator + 1 : end, end);

    CLI::App app("Runs a 32-bit agent on this machine, whatever its kernel.", "talvane-host");
    app.formatter(std::make_shared<Help>());
    sim::HostOptions host;
    sim::LaunchOptions options{.realTime = true};
    bool isVerbose = false;
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return std::string("talvane-host: ") + error.what() +
               "\nRun talvane-host --help for its options.\n";
    });
    app.set_version_flag("--version", "talvane-host " TALVANE_VERSION);
    app.add_option("--log", options.logFile, "file to write every access to")->type_name("FILE");
    app.add_option("--root", host.root, "folder with the sys, proc and dev to read; / if not given")
        ->type_name("DIR")
        ->check(CLI::ExistingDirectory);
    app.add_flag("--verbose", isVerbose, "say how each area is read");
    try {
        app.parse(static_cast<int>(separator - argv), argv);
        if (command.empty()) throw CLI::RequiredError("-- PROGRAM");
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsageError;
    }
    return RunCommand(command, host, options, isVerbose);
}
