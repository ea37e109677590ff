// SPDX-License-Identifier: MIT
//
// talvane health: a verdict on the machine's sensors.
#ifndef TALVANE_TOOLS_HEALTHCOMMAND_H
#define TALVANE_TOOLS_HEALTHCOMMAND_H

#include <filesystem>
#include <ostream>
#include <vector>

#include "tools/Report.h"
#include "tools/base/Way.h"

namespace tool {

inline constexpr const char* kHealth = "health";

// Also when the command line or the rules are wrong: a monitoring system takes 2 for CRITICAL.
inline constexpr int kHealthUnknown = 3;

struct HealthOrder {
    std::filesystem::path rules;  // empty for none
    bool isNagios = false;
    bool showStates = false;  // only the table of states and verdicts
};

// Writes the verdict to `out`, and problems to `err`. Returns the exit status of monitoring
// plugins: 0 OK, 1 WARNING, 2 CRITICAL, 3 UNKNOWN, which also stands for sensors and rules that
// cannot be read.
int ShowHealth(const HealthOrder& order, const std::vector<Way>& ways, Format format,
               std::ostream& out, std::ostream& err);

}  // namespace tool

#endif
