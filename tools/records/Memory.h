// SPDX-License-Identifier: MIT
//
// The installed memory and its banks. Sizes and speeds are texts with their unit.
#ifndef TALVANE_TOOLS_RECORDS_MEMORY_H
#define TALVANE_TOOLS_RECORDS_MEMORY_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"

namespace tool {

struct Bank {
    int slot;  // 0 also where the firmware gives no number
    std::string size;
    std::string type;
    std::string typeDetail;
    std::string speed;
    std::string manufacturer;
};

struct Memory {
    int totalMegabytes;  // modulo 65536
    std::vector<Bank> banks;
};

// Nothing when the source cannot be read.
std::optional<Memory> ReadMemory();

std::string ToText(const Memory& memory);
Json ToJson(const Memory& memory);

}  // namespace tool

#endif
