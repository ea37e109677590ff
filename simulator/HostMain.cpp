// SPDX-License-Identifier: MIT
//
// The program talvane-host: runs another program on this machine, with what the library asks for
// answered through the interfaces of today's kernels.

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "simulator/Launcher.h"
#include "simulator/LauncherProgram.h"

namespace {

constexpr const char* kHelpText =
    "Runs a 32-bit agent on this machine, whatever its kernel.\n"
    "Usage: talvane-host [OPTION...] -- PROGRAM [ARGUMENT...]\n"
    "\n"
    "Options:\n"
    "  -h,--help    Print this help message and exit\n"
    "  --version    Display program version information and exit\n"
    "  --log FILE   file to write every access to\n"
    "  --root DIR   folder with the sys, proc and dev to read; / if not given\n"
    "  --verbose    say how each area is read\n";

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

void RequireFolder(const std::string& root) {
    std::error_code ignored;  // of a folder that cannot be looked at
    if (!std::filesystem::is_directory(root, ignored))
        throw sim::UsageError("--root: Directory does not exist: " + root);
}

}  // namespace

int main(int argc, char* argv[]) {
    std::string root;
    bool isVerbose = false;
    sim::LaunchOptions options{.realTime = true};
    const sim::LauncherProgram program{
        .name = "talvane-host",
        .helpText = kHelpText,
        .options = {{.name = "log", .value = &options.logFile, .valueName = "FILE"},
                    {.name = "root", .value = &root, .valueName = "DIR"},
                    {.name = "verbose", .isGiven = &isVerbose}},
        .machine = nullptr,
        .run = [&](char* const command[]) {
            sim::HostOptions host;
            if (!root.empty()) {
                RequireFolder(root);
                host.root = root;
            }
            const std::vector<sim::AreaWay> ways = sim::SurveyHost(host);
            if (isVerbose) ShowWays(ways);
            ShowProblems(ways);
            return sim::RunOnHost(command, host, options);
        }};
    return sim::RunLauncher(program, argc, argv);
}
