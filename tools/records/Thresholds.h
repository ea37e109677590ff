// SPDX-License-Identifier: MIT
//
// The library's list of thresholds. It asks the BMC for each entry by the record's place in the
// repository, not by the sensor's number. So an entry can have the thresholds of another sensor.
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

// One for each of the repository's first 64 records. Those after the last sensor are zero.
using Thresholds = std::vector<Threshold>;

// Nothing when the source cannot be read.
std::optional<Thresholds> ReadThresholds();

std::string ToText(const Thresholds& thresholds);
Json ToJson(const Thresholds& thresholds);

}  // namespace tool

#endif
