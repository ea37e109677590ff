// SPDX-License-Identifier: MIT
//
// What stands in the way of reading this machine, and how to remove it.
#ifndef TALVANE_TOOLS_DOCTORCOMMAND_H
#define TALVANE_TOOLS_DOCTORCOMMAND_H

#include <ostream>

#include "tools/Report.h"
#include "tools/doctor/Facts.h"

namespace tool {

inline constexpr const char* kDoctor = "doctor";

// Writes each finding with its system call, errno and remedy. JSON has all checks. Returns whether
// nothing stops the tool.
bool ShowDoctor(const Facts& facts, Format format, std::ostream& out);

}  // namespace tool

#endif
