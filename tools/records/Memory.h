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

// "2048 MB (2 GB)"; empty when the firmware describes no memory.
std::string TotalText(const Memory& memory);

// What is to be known about the figures.
std::vector<std::string> MemoryNotes(const Memory& memory);

std::string ToText(const Memory& memory);
Json ToJson(const Memory& memory);

}  // namespace tool

#endif
