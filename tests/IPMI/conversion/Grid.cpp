// SPDX-License-Identifier: MIT
//
// The formulas of the grid, and the lines of their hashes.

#include "Grid.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

// FNV-1a over 64-bit words.
class Hash {
public:
    void Add(std::uint64_t word) { sum_ = (sum_ ^ word) * 1099511628211u; }
    void Add(double value) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        Add(bits);
    }
    std::uint64_t Sum() const { return sum_; }

private:
    std::uint64_t sum_ = 14695981039346656037u;
};

GridFormula Formula(int format, int code, int m, int b, int bExponent, int resultExponent) {
    return {static_cast<unsigned char>(format << 6),
            static_cast<unsigned char>(code),
            m,
            b,
            bExponent,
            resultExponent};
}

std::string Line(Conversions& conversions, const GridFormula& formula) {
    Hash values;
    Hash raws;
    for (int x = 0; x < 256; ++x) {
        const double value = conversions.ValueOf(formula, static_cast<unsigned char>(x));
        values.Add(value);
        raws.Add(std::uint64_t{conversions.RawOf(formula, value)});
    }
    char line[160];
    std::snprintf(line, sizeof line,
                  "format %d linearization %d M %d B %d exponents %d %d: %016" PRIx64
                  " and back %016" PRIx64 "\n",
                  formula.unit1 >> 6, formula.linearization, formula.m, formula.b,
                  formula.bExponent, formula.resultExponent, values.Sum(), raws.Sum());
    return line;
}

// Unspecified, the first, RPM, the last of the table and two past it.
constexpr unsigned char kUnits[] = {0, 1, 18, 90, 91, 255};

std::string UnitLine(Conversions& conversions, unsigned char unit1) {
    Hash texts;
    for (const unsigned char base : kUnits)
        for (const unsigned char modifier : kUnits)
            for (const int size : {0, 1, 4, 64}) {
                char text[64] = "";
                conversions.WriteUnit(unit1, base, modifier, text, size);
                for (const char character : text)
                    texts.Add(std::uint64_t{static_cast<unsigned char>(character)});
            }
    char line[80];
    std::snprintf(line, sizeof line, "units %02X: %016" PRIx64 "\n", unit1, texts.Sum());
    return line;
}

constexpr int kFormats = 4;

}  // namespace

std::string ConversionGrid(Conversions& conversions) {
    std::string lines;

    // The linear formula over the factors and exponents of a record, and exponents beyond.
    constexpr int kExponents[][2] = {{0, 0}, {0, -2},  {-1, -1}, {-8, -8},
                                     {7, 7}, {-3, -5}, {5, -6},  {-128, 127}};
    for (const int m : {-512, -3, 0, 1, 27, 511})
        for (const int b : {-512, 0, 7, 333})
            for (const auto& [bExponent, rExponent] : kExponents)
                for (const int format : {0, 2})
                    lines += Line(conversions, Formula(format, 0, m, b, bExponent, rExponent));

    // Every linearization, of small, fractional, negative, large and huge arguments.
    constexpr int kFactors[][4] = {{1, 0, 0, 0},    {2, 3, 0, -2}, {-3, 5, 1, -3},
                                   {511, -7, 2, 1}, {7, 1, -1, 7}, {13, -512, 0, -8}};
    for (int code = 0; code <= 12; ++code)
        for (int i = 0; const auto& [m, b, bExponent, rExponent] : kFactors)
            lines += Line(conversions, Formula(i++ % kFormats, code, m, b, bExponent, rExponent));

    for (int unit1 = 0; unit1 < 256; ++unit1)
        lines += UnitLine(conversions, static_cast<unsigned char>(unit1));
    return lines;
}
