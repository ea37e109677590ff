// SPDX-License-Identifier: MIT
//
// The processors and their caches. Sizes and speeds are texts with their unit.
#ifndef TALVANE_TOOLS_RECORDS_PROCESSORS_H
#define TALVANE_TOOLS_RECORDS_PROCESSORS_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"

namespace tool {

struct Cache {
    int level;
    std::string designation;
    std::string installedSize;
    std::string maximumSize;
    std::string speed;
};

struct Processor {
    std::string family;
    std::string manufacturer;
    std::string currentSpeed;
    std::string maximumSpeed;
    std::string externalClock;
    bool disabled;
    bool statusUnknown;
    std::vector<Cache> caches;  // without those of which nothing is known
};

using Processors = std::vector<Processor>;

// Nothing when the source cannot be read.
std::optional<Processors> ReadProcessors();

// "yes", "no" or "unknown".
const char* DisabledText(const Processor& processor);

std::string ToText(const Processors& processors);
Json ToJson(const Processors& processors);

}  // namespace tool

#endif
