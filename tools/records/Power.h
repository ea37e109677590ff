// SPDX-License-Identifier: MIT
//
// The power supplies, and those among them that pass for an uninterruptible one.
#ifndef TALVANE_TOOLS_RECORDS_POWER_H
#define TALVANE_TOOLS_RECORDS_POWER_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"

namespace tool {

struct PowerSupply {
    std::string name;
    std::string manufacturer;
    std::string serialNumber;
    std::string status;
};

struct Power {
    int redundant;  // supplies that belong to a redundant unit
    std::vector<PowerSupply> supplies;
    std::vector<PowerSupply> ups;
};

// Nothing when the source cannot be read.
std::optional<Power> ReadPower();

std::string ToText(const Power& power);
Json ToJson(const Power& power);

}  // namespace tool

#endif
