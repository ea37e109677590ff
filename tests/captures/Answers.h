// SPDX-License-Identifier: MIT
//
// Every answer of the SMBIOS commands, each record taken apart into named texts.
#ifndef TALVANE_TESTS_ANSWERS_H
#define TALVANE_TESTS_ANSWERS_H

#include <map>
#include <string>

namespace captures {

// The SMBIOS commands by the names that the answers carry.
constexpr const char* kCommandNames[] = {"board",        "processors", "memory", "ports",
                                         "power",        "ups",        "fans",   "voltages",
                                         "temperatures", "system"};

// "board.RomVendor", "cpu[1].cache[2].speed", "fans.quantity", "power.result" and so on; elements
// count from 1. A field that the library left as it was holds "" or "0".
using Answers = std::map<std::string, std::string>;

// Asks the machine that is at hand everything. The library is released first and afterwards.
Answers AskEverything();

}  // namespace captures

#endif
