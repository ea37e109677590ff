// SPDX-License-Identifier: MIT
//
// The six thresholds of a sensor. Their order is that of the BMC's masks (IPMI 2.0, 35.8) and of
// ThresholdFlag: lower non-critical, critical and non-recoverable, then upper in the same order.
#ifndef TALVANE_TOOLS_LIBRARY_LIMITS_H
#define TALVANE_TOOLS_LIBRARY_LIMITS_H

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"
#include "tools/base/Layout.h"

namespace tool {

inline constexpr std::size_t kLimits = 6;

template <class Value>
using Six = std::array<Value, kLimits>;

using Limits = Six<std::optional<double>>;  // nothing: none, or the BMC does not say it

inline constexpr Six<const char*> kLimitNames = {"lower non-critical",    "lower critical",
                                                 "lower non-recoverable", "upper non-critical",
                                                 "upper critical",        "upper non-recoverable"};

// From the lowest to the highest, as people read them.
inline constexpr Six<std::size_t> kAscending = {2, 1, 0, 3, 4, 5};

// The six values of a threshold record of the library. The fields of all its kinds of record have
// the same names.
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

// Whether there is a limit.
bool HasAny(const Limits& limits);

// The outermost limit that a reading has reached (IPMI 2.0, 36.2); nothing for none.
std::optional<std::size_t> ReachedLimit(double reading, const Limits& limits);

// The number in at most six digits; empty for nothing.
std::string NumberText(std::optional<double> value);

// For tables: the columns of the six limits and their cells, in ascending order.
void AddLimitColumns(std::vector<Column>& columns);
void AddLimitCells(Row& row, const Limits& limits);
inline constexpr const char* kLimitLegend =
    "L lower, U upper; NR non-recoverable, CR critical, NC non-critical";

// The limit's name in JSON: "upperCritical".
const char* LimitMember(std::size_t limit);

// An object with a member for each limit, null where there is none.
Json LimitsJson(const Limits& limits);

}  // namespace tool

#endif
