// SPDX-License-Identifier: MIT
//
// The six thresholds of a sensor, in the order of the BMC's masks (IPMI 2.0, 35.8) and of
// ThresholdFlag: lower non-critical, critical, non-recoverable; upper the same.
#ifndef TALVANE_TOOLS_LIMITS_H
#define TALVANE_TOOLS_LIMITS_H

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/Json.h"
#include "tools/Layout.h"

namespace tool {

inline constexpr std::size_t kLimits = 6;

template <class Value>
using Six = std::array<Value, kLimits>;

using Limits = Six<std::optional<double>>;  // nothing: the sensor has none, or does not tell it

inline constexpr Six<const char*> kLimitNames = {"lower non-critical",    "lower critical",
                                                 "lower non-recoverable", "upper non-critical",
                                                 "upper critical",        "upper non-recoverable"};

// From the lowest to the highest, as people read them.
inline constexpr Six<std::size_t> kAscending = {2, 1, 0, 3, 4, 5};

// Of any of the library's threshold records: their fields have the same names.
template <class Value, class Record>
Six<Value> LimitValues(const Record& record) {
    return {record.LowerNonCriticalThreshold,   record.LowerCriticalThreshold,
            record.LowerNonRecoverThreshold,    record.UpperNonCriticalThresholdValue,
            record.UpperCriticalThresholdValue, record.UpperNonRecoverThresholdValue};
}

inline bool InMask(unsigned char mask, std::size_t limit) {
    return ((mask >> limit) & 1) != 0;
}

Limits AllOf(const Six<double>& values);
Limits OnlyIn(unsigned char mask, const Six<double>& values);

// The limit that a reading has reached, the outermost first (IPMI 2.0, 36.2); nothing for none.
std::optional<std::size_t> ReachedLimit(double reading, const Limits& limits);

// As short as six digits allow; empty for nothing.
std::string NumberText(std::optional<double> value);

// For tables: the columns of the six limits, and their cells, ascending.
void AddLimitColumns(std::vector<Column>& columns);
void AddLimitCells(Row& row, const Limits& limits);
inline constexpr const char* kLimitLegend =
    "L lower, U upper; NR non-recoverable, CR critical, NC non-critical";

// An object with a member for each limit, null where there is none.
Json LimitsJson(const Limits& limits);

}  // namespace tool

#endif
