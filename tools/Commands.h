// SPDX-License-Identifier: MIT
//
// The commands that show a record, one row each. A further record is one pair of files in records/
// and one row in Commands.cpp.
#ifndef TALVANE_TOOLS_COMMANDS_H
#define TALVANE_TOOLS_COMMANDS_H

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/Json.h"
#include "tools/Source.h"

namespace tool {

// A record, ready to be shown.
struct Answer {
    std::string text;  // whole sections
    Json json;
    std::vector<const Source*> notRead = {};  // of parts that are missing from it
};

// What a record is read with.
struct Settings {
    int loadInterval = 1;  // seconds
};

struct Command {
    const char* name;  // on the command line, and of the member in JSON
    const char* help;
    const Source* source;
    std::optional<Answer> (*ask)(const Settings&);  // nothing when the source cannot be read
};

// In the order of the report.
std::span<const Command> Commands();

}  // namespace tool

#endif
