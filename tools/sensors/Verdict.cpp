// SPDX-License-Identifier: MIT
//
// Names and order of the verdicts.

#include "tools/sensors/Verdict.h"

#include <strings.h>

#include <cstring>

namespace tool {
namespace {

struct VerdictRow {
    Verdict verdict;
    const char* name;
    int severity;
    Tone tone;
};

constexpr VerdictRow kVerdicts[] = {
    {Verdict::kOk, "OK", 0, Tone::kGood},
    {Verdict::kWarning, "WARNING", 2, Tone::kWarning},
    {Verdict::kCritical, "CRITICAL", 3, Tone::kBad},
    {Verdict::kUnknown, "UNKNOWN", 1, Tone::kUnknown},
};

const VerdictRow& RowOf(Verdict verdict) {
    return kVerdicts[static_cast<std::size_t>(verdict)];
}

}  // namespace

const char* VerdictName(Verdict verdict) {
    return RowOf(verdict).name;
}

std::optional<Verdict> VerdictNamed(std::string_view name) {
    for (const VerdictRow& row : kVerdicts)
        if (name.size() == std::strlen(row.name) &&
            strncasecmp(name.data(), row.name, name.size()) == 0)
            return row.verdict;
    return std::nullopt;
}

int Severity(Verdict verdict) {
    return RowOf(verdict).severity;
}

Tone ToneOf(Verdict verdict) {
    return RowOf(verdict).tone;
}

}  // namespace tool
