// SPDX-License-Identifier: MIT
//
// Prints how the library's answers about the captured machines compare with dmidecode's: fields
// compared, equal, and different by which rule. Exits with 1 when a difference has no
// rule, 2 without captures.

#include <cstdio>
#include <exception>

#include "Capture.h"

namespace {

using namespace captures;

void PrintLine(const std::string& name, const Comparison& comparison) {
    std::printf("%-38s %7u %7u %7u %7zu\n", name.c_str(), comparison.fields, comparison.equal,
                comparison.Ruled(), comparison.unexplained.size());
}

void Add(const Comparison& comparison, Comparison& total) {
    total.fields += comparison.fields;
    total.equal += comparison.equal;
    for (const auto& [rule, count] : comparison.byRule) total.byRule[rule] += count;
    total.unexplained.insert(total.unexplained.end(), comparison.unexplained.begin(),
                             comparison.unexplained.end());
}

int Print() {
    const std::vector<Capture> all = AllCaptures();
    if (all.empty()) {
        std::fprintf(stderr, "no captures in %s\n", CaptureFolder().c_str());
        return 2;
    }
    std::printf("%-38s %7s %7s %7s %7s\n", "capture", "fields", "equal", "ruled", "open");
    Comparison total;
    for (const Capture& capture : all) {
        const Comparison comparison = Examine(capture);
        PrintLine(capture.name, comparison);
        Add(comparison, total);
    }
    PrintLine(std::to_string(all.size()) + " captures", total);
    std::printf("\n%-38s %7s\n", "rule", "fields");
    for (const RuleText& rule : AllRules())
        std::printf("%-38s %7u  %s\n", std::string(rule.name).c_str(), total.byRule[rule.rule],
                    std::string(rule.says).c_str());
    for (const std::string& difference : total.unexplained)
        std::printf("open: %s\n", difference.c_str());
    return total.unexplained.empty() ? 0 : 1;
}

}  // namespace

int main() {
    try {
        return Print();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
