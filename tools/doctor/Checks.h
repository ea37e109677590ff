// SPDX-License-Identifier: MIT
//
// The preconditions of reading a machine, one check each.
#ifndef TALVANE_TOOLS_DOCTOR_CHECKS_H
#define TALVANE_TOOLS_DOCTOR_CHECKS_H

#include <optional>
#include <span>
#include <string>

#include "tools/doctor/Facts.h"

namespace tool {

struct Finding {
    bool stopsTool = true;  // else only agents that are not started by talvane-host
    std::string text;       // what is wrong
    std::string call;       // the system call that shows it; empty: none
    int error = 0;          // its errno
    std::string remedy;     // a command for a shell
};

struct Check {
    const char* name;
    const char* passes;  // what is known when there is no finding
    std::optional<Finding> (*find)(const Facts& facts);
};

// In the order in which remedies should be tried.
std::span<const Check> Checks();

}  // namespace tool

#endif
