// SPDX-License-Identifier: MIT
//
// Finds the command in the tables, and repeats it where that is asked for.

#include "tools/Run.h"

#include <unistd.h>

#include <iostream>
#include <stdexcept>

namespace tool {
namespace {

void Flush() {
    if (!std::cout.flush()) throw std::runtime_error("cannot write to standard output");
}

// The command that is asked for; all commands for the report, none for a change.
std::span<const Command> Selected(const Options& options) {
    const auto commands = Commands();
    const std::string& name = options.command;
    if (name == kReport) return commands;
    if (options.settings.libraryRecords) return LibrarySensorsCommand();
    for (std::size_t i = 0; i < commands.size(); ++i)
        if (name == commands[i].name) return commands.subspan(i, 1);
    return {};
}

// Between two tables a terminal is cleared; any other output gets a blank line.
void BeginNext(const Watch& watch, Format format) {
    (void)sleep(static_cast<unsigned>(watch.seconds));  // an early table does no harm
    constexpr const char* kHomeAndClear = "\x1B[H\x1B[2J";
    if (isatty(STDOUT_FILENO) != 0)
        std::cout << kHomeAndClear;
    else if (format == Format::kText)
        std::cout << '\n';
}

bool Show(const Options& options) {
    const auto commands = Selected(options);
    for (int shown = 1;; ++shown) {
        const bool complete =
            Report(commands, options.settings, options.format, std::cout, std::cerr);
        Flush();
        const bool last = options.watch.seconds == 0 || shown == options.watch.count;
        if (last || !complete) return complete;
        BeginNext(options.watch, options.format);
    }
}

}  // namespace

int Run(const Options& options) {
    for (const Change& change : Changes()) {
        if (options.command != change.name) continue;
        const bool done = Make(change, options.order, options.format, std::cout, std::cerr);
        Flush();
        return done ? kAllDone : kIncomplete;
    }
    if (options.command == kHealth) {
        const int status = ShowHealth(options.health, options.format, std::cout, std::cerr);
        Flush();
        return status;
    }
    return Show(options) ? kAllDone : kIncomplete;
}

}  // namespace tool
