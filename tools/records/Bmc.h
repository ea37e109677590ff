// SPDX-License-Identifier: MIT
//
// The BMC's firmware and its inventory: the board, chassis and product that it is part of.
#ifndef TALVANE_TOOLS_RECORDS_BMC_H
#define TALVANE_TOOLS_RECORDS_BMC_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"
#include "tools/base/Layout.h"

namespace tool {

struct Bmc {
    std::string firmware;  // "1.05"
    std::string boardManufacturer;
    std::string boardProduct;
    std::string boardSerialNumber;
    std::string boardPartNumber;
    std::string chassisPartNumber;
    std::string chassisSerialNumber;
    std::string productManufacturer;
    std::string productName;
    std::string productPartNumber;
    std::string productVersion;
    std::string productSerialStart;  // the serial number without its last character
};

// Nothing when the source cannot be read.
std::optional<Bmc> ReadBmc();

std::vector<Fact> BmcFacts(const Bmc& bmc);

std::string ToText(const Bmc& bmc);
Json ToJson(const Bmc& bmc);

}  // namespace tool

#endif
