// SPDX-License-Identifier: MIT
//
// Reads the list line by line: a vendor's line, then a line for each of its devices, with a tab
// before it.
//
//   8086  Intel Corporation
//   <tab>24db  82801EB/ER (ICH5/ICH5R) IDE Controller
//   <tab><tab>1028 0151  a subsystem, which is not used here

#include "tools/library/PciNames.h"

#include <charconv>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string_view>

#include "tools/base/Text.h"

namespace tool {
namespace {

constexpr const char* kListVariable = "TALVANE_PCI_IDS";
constexpr const char* kLists[] = {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids",
                                  "/usr/share/pci.ids"};

struct NamedNumber {
    int number;
    std::string name;
};

// "8086  Intel Corporation"; nothing for another text.
std::optional<NamedNumber> NamedNumberOf(std::string_view text) {
    constexpr std::size_t kDigits = 4;
    if (text.size() <= kDigits || text[kDigits] != ' ') return std::nullopt;
    const char* const end = text.data() + kDigits;
    int number = 0;
    const auto [stop, error] = std::from_chars(text.data(), end, number, 16);
    if (error != std::errc() || stop != end) return std::nullopt;
    return NamedNumber{number, std::string(Trimmed(text.substr(kDigits), " \r"))};
}

}  // namespace

std::map<PciId, PciName> PciNamesIn(std::istream& list, const std::set<PciId>& ids) {
    std::map<PciId, PciName> names;
    int vendor = -1;  // that the next devices belong to; no vendor for -1
    for (std::string line; std::getline(list, line);) {
        if (line.empty() || line.front() == '#') continue;
        const bool isBelowVendor = line.front() == '\t';
        const auto row = NamedNumberOf(std::string_view(line).substr(isBelowVendor ? 1 : 0));
        if (!isBelowVendor) vendor = row ? row->number : -1;
        if (!row || vendor < 0) continue;
        if (isBelowVendor) {
            const auto known = names.find({vendor, row->number});
            if (known != names.end()) known->second.device = row->name;
            continue;
        }
        for (auto id = ids.lower_bound({vendor, 0}); id != ids.end() && id->vendor == vendor; ++id)
            names[*id].vendor = row->name;
    }
    return names;
}

std::map<PciId, PciName> KnownPciNames(const std::set<PciId>& ids) {
    const char* const named = std::getenv(kListVariable);
    if (named != nullptr) {
        std::ifstream list(named);
        return PciNamesIn(list, ids);
    }
    for (const char* const file : kLists)
        if (std::ifstream list(file); list) return PciNamesIn(list, ids);
    return {};
}

}  // namespace tool
