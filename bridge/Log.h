// SPDX-License-Identifier: MIT
//
// Messages on standard error; under systemd with the priorities that its journal reads.
#ifndef TALVANE_BRIDGE_LOG_H
#define TALVANE_BRIDGE_LOG_H

#include <string>

namespace bridge {

// Values of syslog(3).
enum class Priority { kError = 3, kWarning = 4, kInfo = 6, kDebug = 7 };

// Debug messages are dropped unless asked for.
void LogEverything();

void Log(Priority priority, const std::string& message);

// "text: what the errno means".
std::string WithReason(const std::string& text, int error);

}  // namespace bridge

#endif
