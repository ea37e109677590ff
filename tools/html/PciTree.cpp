// SPDX-License-Identifier: MIT
//
// Follows the bridges from bus to bus, each bus once.

#include "tools/html/PciTree.h"

#include <cstdlib>
#include <map>
#include <utility>

#include "tools/html/Escape.h"

namespace tool {
namespace {

// The functions by bus, of which each is taken once.
using Buses = std::map<int, std::vector<const PciFunction*>>;

int BusOf(const PciFunction& function) {
    constexpr int kHexadecimal = 16;
    return static_cast<int>(
        std::strtol(PciAddress(function.location).c_str(), nullptr, kHexadecimal));
}

std::vector<PciNode> TakeBus(Buses& buses, int bus) {
    const auto found = buses.find(bus);
    if (found == buses.end()) return {};
    const std::vector<const PciFunction*> functions = std::move(found->second);
    buses.erase(found);
    std::vector<PciNode> nodes;
    for (const PciFunction* function : functions) {
        PciNode node{function, {}};
        if (function->secondaryBus) node.below = TakeBus(buses, *function->secondaryBus);
        nodes.push_back(std::move(node));
    }
    return nodes;
}

// Whether a bridge that is not on this bus leads to it.
bool IsBelowABridge(const Buses& buses, int bus) {
    for (const auto& [other, functions] : buses)
        for (const PciFunction* function : functions)
            if (other != bus && function->secondaryBus == bus) return true;
    return false;
}

std::string NodeMarkup(const PciNode& node);

std::string ListMarkup(const std::vector<PciNode>& nodes) {
    std::string markup = "<ul>\n";
    for (const PciNode& node : nodes) markup += NodeMarkup(node);
    return markup + "</ul>\n";
}

std::string NodeMarkup(const PciNode& node) {
    const PciFunction& function = *node.function;
    const std::string& what = function.subClass.empty() ? function.className : function.subClass;
    std::string names = function.name.vendor;
    if (!function.name.device.empty()) names += ' ' + function.name.device;
    std::string markup = "<li><span class=\"function\"><code>" +
                         Escaped(PciAddress(function.location)) + "</code> <strong>" +
                         EscapedOrDash(what) + "</strong> <code class=\"id\">" +
                         Escaped(PciIdText(function)) + "</code>";
    if (!names.empty()) markup += " <span class=\"names\">" + Escaped(names) + "</span>";
    markup += "</span>\n";
    if (!node.below.empty()) markup += ListMarkup(node.below);
    return markup + "</li>\n";
}

}  // namespace

std::vector<PciRoot> PciTreeOf(const PciFunctions& functions) {
    Buses buses;
    for (const PciFunction& function : functions) buses[BusOf(function)].push_back(&function);
    std::vector<PciRoot> roots;
    const auto take = [&](int bus) {
        if (buses.contains(bus)) roots.push_back({bus, TakeBus(buses, bus)});
    };
    take(0);
    for (int bus = 1; bus <= 0xFF; ++bus)
        if (!IsBelowABridge(buses, bus)) take(bus);
    // What is left are bridges that lead to each other.
    while (!buses.empty()) take(buses.begin()->first);
    return roots;
}

std::string PciTreePicture(const PciFunctions& functions) {
    std::string markup = "<div class=\"tree\">\n";
    for (const PciRoot& root : PciTreeOf(functions))
        markup += "<p class=\"bus\">Bus " + std::to_string(root.bus) + "</p>\n" +
                  ListMarkup(root.functions);
    return markup + "</div>\n";
}

}  // namespace tool
