// SPDX-License-Identifier: MIT
//
// The library's list of thresholds. It asks the BMC for each by the record's place in the
// repository in place of the sensor's number, so one sensor's can stand at another's entity.
#ifndef TALVANE_TOOLS_RECORDS_THRESHOLDS_H
#define TALVANE_TOOLS_RECORDS_THRESHOLDS_H

#include <optional>
#include <vector>

#include "tools/base/Json.h"
#include "tools/library/Limits.h"

namespace tool {

struct Threshold {
    int entity;
    int type;
    Limits limits;
};

// Of the repository's first 64 records; those behind the last sensor's are zero.
using Thresholds = std::vector<Threshold>;

// Nothing when the source cannot be read.
std::optional<Thresholds> ReadThresholds();

std::string ToText(const Thresholds& thresholds);
Json ToJson(const Thresholds& thresholds);

}  // namespace tool

#endif
