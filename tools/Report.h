// SPDX-License-Identifier: MIT
//
// Runs commands and writes what they answer.
#ifndef TALVANE_TOOLS_REPORT_H
#define TALVANE_TOOLS_REPORT_H

#include <ostream>
#include <span>

#include "tools/Commands.h"

namespace tool {

// The first member of every JSON output. It changes when a member changes its meaning or goes away.
inline constexpr int kJsonSchema = 1;

// kJsonLine: the same object as kJson on one line, with the time after the schema.
enum class Format { kText, kJson, kJsonLine };

// The time of the clock, in UTC: "2026-11-22T10:35:00Z".
std::string TimeNow();

// Writes the answers to `out`, and to `err` one line for each source that could not be read.
//
// When something is missing, the text has a section "Not read". It names each source with its
// commands, even those of which other parts were read. The text of several commands ends with the
// ways in which areas were read, where settings have some. JSON is one object with "schema" and a
// member for each command, null when nothing of it could be read, "ways", and the array "errors" of
// {source, message}.
//
// Returns whether everything could be read.
bool Report(std::span<const Command> commands, const Settings& settings, Format format,
            std::ostream& out, std::ostream& err);

// The JSON of the answers alone, without anything written.
Json ReportJson(std::span<const Command> commands, const Settings& settings);

void DumpJson(const Json& json, std::ostream& out);

}  // namespace tool

#endif
