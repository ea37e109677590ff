// SPDX-License-Identifier: MIT
//
// The command line of the tool.
#ifndef TALVANE_TOOLS_COMMANDLINE_H
#define TALVANE_TOOLS_COMMANDLINE_H

#include <filesystem>
#include <string>
#include <variant>

#include "tools/Report.h"

namespace tool {

inline constexpr int kAllRead = 0;
inline constexpr int kSourceMissing = 1;
inline constexpr int kFailure = 2;  // usage error, unusable machine, output lost

inline constexpr const char* kReport = "report";  // the command that runs all others

struct Options {
    std::string command;  // kReport or the name of a row of Commands()
    Format format = Format::text;
    std::filesystem::path machine;  // of a simulated server; empty for the real machine
};

// The options, or the exit status when the line asks for nothing to be run: help and version go to
// standard output, a usage error to standard error.
std::variant<Options, int> ParseCommandLine(int argc, const char* const argv[]);

}  // namespace tool

#endif
