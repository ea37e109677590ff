// SPDX-License-Identifier: MIT
//
// The commands that show a record, one row each.
//
// A further record touches these places:
//   records/           its pair of files: Read..., ToText and ToJson
//   Commands.cpp       its row, which also gives it its place in the report
//   CMakeLists.txt     the new file
//   base/Source.h      where it comes from, if that is a new source; sources/ says why that failed
//   CommandLine.cpp    options of its own, if it has some (AddCommands); base/Settings.h keeps them
//   tests/tools/       its test; the lists of commands in CommandLineTest.cpp and GoldenTest.cpp;
//                      golden/, recorded anew
//   README.md          the list of commands
#ifndef TALVANE_TOOLS_COMMANDS_H
#define TALVANE_TOOLS_COMMANDS_H

#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/base/Json.h"
#include "tools/base/Settings.h"
#include "tools/base/Source.h"

namespace tool {

// A record, ready to be shown.
struct Answer {
    std::string text;  // whole sections
    Json json;
    std::vector<const Source*> notRead = {};  // the sources of the parts that are missing
};

struct Command {
    const char* name;  // on the command line, and of the member in JSON
    const char* help;
    const Source* source;
    std::optional<Answer> (*ask)(const Settings&);  // nothing when the source cannot be read
};

// In the order of the report.
std::span<const Command> Commands();

// The one command of "sensors --library", which is not part of the report.
std::span<const Command> LibrarySensorsCommand();

}  // namespace tool

#endif
