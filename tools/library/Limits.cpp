// SPDX-License-Identifier: MIT
//
// Titles and JSON names of the six thresholds, and which of them a reading has reached.

#include "tools/library/Limits.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "Talvane.h"

namespace tool {
namespace {

static_assert(THRESHOLD_LOWER_WARNING == 0 && THRESHOLD_UPPER_NON_RECOVERABLE == kLimits - 1);

constexpr Six<const char*> kLimitTitles = {"L NC", "L CR", "L NR", "U NC", "U CR", "U NR"};
constexpr Six<const char*> kLimitMembers = {"lowerNonCritical",    "lowerCritical",
                                            "lowerNonRecoverable", "upperNonCritical",
                                            "upperCritical",       "upperNonRecoverable"};

bool IsUpper(std::size_t limit) {
    return limit >= THRESHOLD_UPPER_WARNING;
}

}  // namespace

Limits AllOf(const Six<double>& values) {
    Limits limits;
    for (std::size_t i = 0; i < kLimits; ++i) limits[i] = values[i];
    return limits;
}

Limits OnlyIn(unsigned char mask, const Six<double>& values) {
    Limits limits = AllOf(values);
    for (std::size_t i = 0; i < kLimits; ++i)
        if (!InMask(mask, i)) limits[i].reset();
    return limits;
}

bool HasAny(const Limits& limits) {
    return std::any_of(limits.begin(), limits.end(),
                       [](const auto& limit) { return limit.has_value(); });
}

std::optional<std::size_t> ReachedLimit(double reading, const Limits& limits) {
    constexpr Six<std::size_t> kOutermostFirst = {5, 4, 3, 2, 1, 0};
    for (const std::size_t i : kOutermostFirst)
        if (limits[i] && (IsUpper(i) ? reading >= *limits[i] : reading <= *limits[i])) return i;
    return std::nullopt;
}

std::string NumberText(std::optional<double> value) {
    if (!value) return "";
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", *value);
    return text;
}

void AddLimitColumns(std::vector<Column>& columns) {
    for (const std::size_t i : kAscending)
        columns.push_back({kLimitTitles[i], Column::Align::kRight});
}

void AddLimitCells(Row& row, const Limits& limits) {
    for (const std::size_t i : kAscending) row.push_back(NumberText(limits[i]));
}

const char* LimitMember(std::size_t limit) {
    return kLimitMembers[limit];
}

Json LimitsJson(const Limits& limits) {
    Json object = Json::object();
    for (const std::size_t i : kAscending)
        object[kLimitMembers[i]] = limits[i] ? Json(*limits[i]) : Json();
    return object;
}

}  // namespace tool
