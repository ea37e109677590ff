// SPDX-License-Identifier: MIT
//
// Finds the command in the tables, and repeats it where that is asked for.

#include "tools/Run.h"

#include <unistd.h>

#include <iostream>
#include <stdexcept>

#include "tools/base/Terminal.h"

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

// Between two tables a terminal is cleared; any other output gets a blank line. Lines of JSON
// follow each other.
void BeginNext(const Watch& watch, Format format) {
    (void)sleep(static_cast<unsigned>(watch.seconds));  // an early table does no harm
    constexpr const char* kHomeAndClear = "\x1B[H\x1B[2J";
    if (format != Format::kText) return;
    if (isatty(STDOUT_FILENO) != 0)
        std::cout << kHomeAndClear;
    else
        std::cout << '\n';
}

bool Show(const Options& options) {
    const auto commands = Selected(options);
    const bool isJson = options.format == Format::kJson;
    const bool repeats = options.watch.seconds != 0;
    const Format format = isJson && repeats ? Format::kJsonLine : options.format;
    for (int shown = 1;; ++shown) {
        UseLook(LookFor(STDOUT_FILENO, options.color));  // its width can have changed
        const bool complete = Report(commands, options.settings, format, std::cout, std::cerr);
        Flush();
        const bool last = !repeats || shown == options.watch.count;
        if (last || !complete) return complete;
        BeginNext(options.watch, format);
    }
}

}  // namespace

int Run(const Options& options) {
    UseLook(LookFor(STDOUT_FILENO, options.color));
    for (const Change& change : Changes()) {
        if (options.command != change.name) continue;
        const bool done = Make(change, options.order, options.settings.ways, options.format,
                               std::cout, std::cerr);
        Flush();
        return done ? kAllDone : kIncomplete;
    }
    if (options.command == kHealth) {
        const int status =
            ShowHealth(options.health, options.settings.ways, options.format, std::cout, std::cerr);
        Flush();
        return status;
    }
    if (options.command == kMetrics) {
        WriteMetrics(options.metrics, options.settings, std::cout);
        Flush();
        return kAllDone;
    }
    if (options.command == kDoctor) {
        const bool isWell = ShowDoctor(ReadFacts(options.root.empty() ? "/" : options.root),
                                       options.format, std::cout);
        Flush();
        return isWell ? kAllDone : kIncomplete;
    }
    if (options.command == kCapture)
        return WriteCapture(options.capture, options.settings, std::cerr) ? kAllDone : kIncomplete;
    if (options.command == kGet) {
        const bool found = ShowValue(options.path, options.settings, std::cout, std::cerr);
        Flush();
        return found ? kAllDone : kIncomplete;
    }
    if (!options.page.file.empty())
        return WriteHtmlReport(options.page, options.settings, std::cerr) ? kAllDone : kIncomplete;
    return Show(options) ? kAllDone : kIncomplete;
}

}  // namespace tool
