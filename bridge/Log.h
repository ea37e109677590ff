// SPDX-License-Identifier: MIT
//
// Messages on standard error. Under systemd they have the priorities that its journal reads.
#ifndef TALVANE_BRIDGE_LOG_H
#define TALVANE_BRIDGE_LOG_H

#include <string>
#include <string_view>

namespace bridge {

// Values of syslog(3).
enum class Priority { kError = 3, kWarning = 4, kInfo = 6, kDebug = 7 };

// Debug messages are dropped unless asked for.
void LogEverything(bool wanted);

// Takes no memory, so that it can report that memory has run out. Cuts a message to 400 characters.
void Log(Priority priority, std::string_view message) noexcept;

// "text: what the errno means".
std::string WithReason(const std::string& text, int error);

}  // namespace bridge

#endif
