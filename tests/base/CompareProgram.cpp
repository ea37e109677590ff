// SPDX-License-Identifier: MIT
//
// Compares COUNT powers, natural logarithms and decimal logarithms of random arguments with what
// they should be. Prints what differs and fails when something does. Usage: PROGRAM COUNT SEED

#include <cstdio>
#include <cstdlib>

#include "Comparison.h"

int main(int argc, char** argv) {
    const int count = argc == 3 ? std::atoi(argv[1]) : 0;
    if (count <= 0) {
        std::fprintf(stderr, "usage: %s COUNT SEED\n", argv[0]);
        return 2;
    }
    const std::uint64_t seed = std::strtoull(argv[2], nullptr, 0);
    std::size_t differences = 0;
    for (const auto compare : {ComparePowers, CompareNaturalLogarithms, CompareLogarithms10}) {
        const auto lines = compare(count, seed);
        for (const std::string& line : lines) std::puts(line.c_str());
        differences += lines.size();
    }
    std::printf("%d powers, natural and decimal logarithms each: %zu differences\n", count,
                differences);
    return differences == 0 ? 0 : 1;
}
