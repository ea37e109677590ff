// SPDX-License-Identifier: MIT
//
// The command line of the tool.
#ifndef TALVANE_TOOLS_COMMANDLINE_H
#define TALVANE_TOOLS_COMMANDLINE_H

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "tools/CaptureCommand.h"
#include "tools/Changes.h"
#include "tools/Commands.h"
#include "tools/DoctorCommand.h"
#include "tools/GetCommand.h"
#include "tools/HealthCommand.h"
#include "tools/HtmlReport.h"
#include "tools/MetricsCommand.h"
#include "tools/Report.h"
#include "tools/base/Terminal.h"

namespace tool {

inline constexpr int kAllDone = 0;
inline constexpr int kIncomplete = 1;  // a source was not read, or a change was not made
inline constexpr int kFailure = 2;     // usage error, unusable machine, or lost output

inline constexpr const char* kReport = "report";  // the command that runs all of Commands()

// How often a command is repeated: once only when `seconds` is 0.
struct Watch {
    int seconds = 0;  // between tables
    int count = 0;    // of tables; 0 for no end
};

// Through which interfaces this machine is read.
enum class Reading { kChoose, kDirect, kHost };

struct Options {
    std::string command;  // kReport, kHealth, kMetrics, kGet, kCapture, kDoctor, or the name of a
                          // row of Commands() or Changes()
    Format format = Format::kText;
    ColorChoice color = ColorChoice::kAuto;
    std::filesystem::path machine;  // of a simulated server; empty for the real machine
    Reading reading = Reading::kChoose;
    std::filesystem::path root;  // of the tree that is read as this machine; empty for its own
    Settings settings;
    Watch watch;
    PageOrder page;  // that kReport writes
    HealthOrder health;
    MetricsOrder metrics;
    std::string path;  // of kGet
    CaptureOrder capture;
    Order order;
    std::vector<std::string> arguments;  // the whole line without --machine
};

// The options, or the exit status when there is nothing to run: help and version have gone to
// standard output, or a usage error to standard error.
std::variant<Options, int> ParseCommandLine(int argc, const char* const argv[]);

}  // namespace tool

#endif
