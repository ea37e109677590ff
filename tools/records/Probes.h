// SPDX-License-Identifier: MIT
//
// The voltage and temperature probes that the firmware lists. It states how many there are; their
// readings come from the BMC.
#ifndef TALVANE_TOOLS_RECORDS_PROBES_H
#define TALVANE_TOOLS_RECORDS_PROBES_H

#include <optional>
#include <string>

#include "tools/base/Json.h"

namespace tool {

struct Voltages {
    int quantity;
};

struct Temperatures {
    int quantity;
};

// Nothing when the source cannot be read.
std::optional<Voltages> ReadVoltages();
std::optional<Temperatures> ReadTemperatures();

std::string ToText(const Voltages& voltages);
std::string ToText(const Temperatures& temperatures);
Json ToJson(const Voltages& voltages);
Json ToJson(const Temperatures& temperatures);

}  // namespace tool

#endif
