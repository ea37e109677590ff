// SPDX-License-Identifier: MIT
//
// The names of the areas, and the sentence about each way.

#include "tools/base/WayFacts.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace tool {
namespace {

struct AreaName {
    const char* area;
    const char* name;
};

constexpr AreaName kAreaNames[] = {
    {"smbios", "SMBIOS"}, {"bmc", "BMC"}, {"pci", "PCI"}, {"drives", "Drives"}, {"load", "Load"},
};

std::string NameOf(const std::string& area) {
    const auto name = std::find_if(std::begin(kAreaNames), std::end(kAreaNames),
                                   [&](const AreaName& entry) { return area == entry.area; });
    return name == std::end(kAreaNames) ? area : name->name;
}

std::string SourceOf(const Way& way) {
    if (!way.problem.empty()) return "nothing, " + way.from + " cannot be read";
    const std::string text = way.from + (way.isDirect ? ", directly" : ", through the kernel");
    return way.note.empty() ? text : text + " (" + way.note + ")";
}

}  // namespace

std::vector<Fact> WayFacts(const std::vector<Way>& ways) {
    std::vector<Fact> facts;
    for (const Way& way : ways) facts.push_back({NameOf(way.area), SourceOf(way)});
    return facts;
}

}  // namespace tool
