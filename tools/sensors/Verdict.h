// SPDX-License-Identifier: MIT
//
// How well something is. The numbers are the exit statuses of monitoring plugins.
#ifndef TALVANE_TOOLS_SENSORS_VERDICT_H
#define TALVANE_TOOLS_SENSORS_VERDICT_H

#include <optional>
#include <string_view>

#include "tools/base/Layout.h"

namespace tool {

enum class Verdict { kOk = 0, kWarning = 1, kCritical = 2, kUnknown = 3 };

// "OK", "WARNING", "CRITICAL", "UNKNOWN".
const char* VerdictName(Verdict verdict);

// The verdict of such a name, in upper or lower case; nothing for any other text.
std::optional<Verdict> VerdictNamed(std::string_view name);

// 0 for OK, then UNKNOWN, WARNING and CRITICAL: what is known to be bad counts more than what is
// not known.
int Severity(Verdict verdict);

// How tables show it.
Tone ToneOf(Verdict verdict);

inline Verdict Worse(Verdict one, Verdict other) {
    return Severity(one) < Severity(other) ? other : one;
}

}  // namespace tool

#endif
