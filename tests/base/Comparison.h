// SPDX-License-Identifier: MIT
//
// Powers and logarithms of random arguments, compared with what the C library's functions of more
// digits say.
#ifndef TALVANE_TESTS_BASE_COMPARISON_H
#define TALVANE_TESTS_BASE_COMPARISON_H

#include <cstdint>
#include <string>
#include <vector>

// Each compares `count` results and returns a line for each that differs.
std::vector<std::string> ComparePowers(int count, std::uint64_t seed);
std::vector<std::string> CompareNaturalLogarithms(int count, std::uint64_t seed);
std::vector<std::string> CompareLogarithms10(int count, std::uint64_t seed);

#endif
