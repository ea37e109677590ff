// SPDX-License-Identifier: MIT
//
// The commands that show a record, one row each. A further record is one file in records/ and one
// row in Commands.cpp.
#ifndef TALVANE_TOOLS_COMMANDS_H
#define TALVANE_TOOLS_COMMANDS_H

#include <optional>
#include <span>
#include <string>

#include "tools/Json.h"
#include "tools/Source.h"

namespace tool {

// A record, ready to be shown.
struct Answer {
    std::string text;  // whole sections
    Json json;
};

struct Command {
    const char* name;  // on the command line, and of the member in JSON
    const char* help;
    const Source* source;
    std::optional<Answer> (*ask)();  // nothing when the source cannot be read
};

// In the order of the report.
std::span<const Command> Commands();

}  // namespace tool

#endif
