// SPDX-License-Identifier: MIT
//
// Compares the functions for random arguments and prints how many results differ.

#include "Comparison.h"

#include <bit>
#include <cmath>
#include <cstdio>

#include "Expected.h"
#include "RandomArguments.h"
#include "base/PowersAndLogarithms.h"

namespace {

// Every eighth argument is any double, the others have a result that is worth computing.
constexpr int kAnyDouble = 8;

bool Same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

std::string Line(double result, const char* function, double a, double b, double expected) {
    char line[160];
    std::snprintf(line, sizeof line, "%s(%a, %a) is %a, not %a", function, a, b, expected, result);
    return line;
}

std::vector<std::string> CompareLogarithms(const char* name, double (*function)(double),
                                           double (*expected)(double), int count,
                                           std::uint64_t seed) {
    std::vector<std::string> differences;
    RandomArguments arguments(seed);
    for (int i = 0; i < count; ++i) {
        const double value = i % kAnyDouble == 0 ? arguments.AnyDouble() : arguments.Positive();
        const double result = function(value);
        if (!Same(result, expected(value)))
            differences.push_back(Line(result, name, value, 0.0, expected(value)));
    }
    return differences;
}

}  // namespace

std::vector<std::string> ComparePowers(int count, std::uint64_t seed) {
    std::vector<std::string> differences;
    RandomArguments arguments(seed);
    for (int i = 0; i < count; ++i) {
        const bool any = i % kAnyDouble == 0;
        const double base = any ? arguments.AnyDouble() : arguments.Positive();
        const double exponent = any ? arguments.AnyDouble() : arguments.ExponentFor(base);
        const double result = talvane::Power(base, exponent);
        const double expected = ExpectedPower(base, exponent);
        if (!Same(result, expected))
            differences.push_back(Line(result, "Power", base, exponent, expected));
    }
    return differences;
}

std::vector<std::string> CompareNaturalLogarithms(int count, std::uint64_t seed) {
    return CompareLogarithms("NaturalLogarithm", talvane::NaturalLogarithm,
                             ExpectedNaturalLogarithm, count, seed);
}

std::vector<std::string> CompareLogarithms10(int count, std::uint64_t seed) {
    return CompareLogarithms("Logarithm10", talvane::Logarithm10, ExpectedLogarithm10, count, seed);
}
