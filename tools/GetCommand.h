// SPDX-License-Identifier: MIT
//
// talvane get PATH: one value of the JSON output.
#ifndef TALVANE_TOOLS_GETCOMMAND_H
#define TALVANE_TOOLS_GETCOMMAND_H

#include <ostream>
#include <string>

#include "tools/base/Settings.h"

namespace tool {

inline constexpr const char* kGet = "get";

// Follows the path "board.serial-number" through the JSON of its first word's command, and writes
// the value: of a quantity its text, of a list or an object its JSON on one line. A word fits a
// name when both have the same letters and digits. In a list it is the element's place, counted
// from 0, or its name, address or device. Returns false, with the reason written to `err`, when the
// path leads nowhere or the value is null.
bool ShowValue(const std::string& path, const Settings& settings, std::ostream& out,
               std::ostream& err);

}  // namespace tool

#endif
