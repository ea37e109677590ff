// SPDX-License-Identifier: MIT
//
// The formulas of the grid, and the lines of their hashes.

#include "Grid.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "IPMI/Sensor.h"

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

SensorFormulaParameter Formula(int format, int code, int m, int b, int bExponent, int rExponent) {
    SensorFormulaParameter formula{};
    formula.Unit1 = static_cast<unsigned char>(format << 6);
    formula.SensorLinearization = static_cast<unsigned char>(code);
    formula.M = static_cast<short>(m);
    formula.B = static_cast<short>(b);
    formula.BExp = static_cast<signed char>(bExponent);
    formula.RExp = static_cast<signed char>(rExponent);
    return formula;
}

std::string Line(Sensor& sensor, const SensorFormulaParameter& formula) {
    Hash values;
    Hash raws;
    for (int x = 0; x < 256; ++x) {
        const auto raw = static_cast<unsigned char>(x);
        double value = 0.0;
        (void)sensor.GetReadingConversion(formula, raw, value);
        values.Add(value);
        unsigned char back = 0;
        (void)sensor.GetValueConversion(formula, back, value);
        raws.Add(std::uint64_t{back});
    }
    char line[160];
    std::snprintf(line, sizeof line,
                  "format %d linearization %d M %d B %d exponents %d %d: %016" PRIx64
                  " and back %016" PRIx64 "\n",
                  formula.Unit1 >> 6, formula.SensorLinearization, formula.M, formula.B,
                  formula.BExp, formula.RExp, values.Sum(), raws.Sum());
    return line;
}

constexpr int kFormats = 4;

}  // namespace

std::string ConversionGrid(Sensor& sensor) {
    std::string lines;

    // The linear formula over the factors and exponents of a record, and exponents beyond.
    constexpr int kExponents[][2] = {{0, 0}, {0, -2},  {-1, -1}, {-8, -8},
                                     {7, 7}, {-3, -5}, {5, -6},  {-128, 127}};
    for (const int m : {-512, -3, 0, 1, 27, 511})
        for (const int b : {-512, 0, 7, 333})
            for (const auto& [bExponent, rExponent] : kExponents)
                for (const int format : {0, 2})
                    lines += Line(sensor, Formula(format, 0, m, b, bExponent, rExponent));

    // Every linearization, of small, fractional, negative, large and huge arguments.
    constexpr int kFactors[][4] = {{1, 0, 0, 0},    {2, 3, 0, -2}, {-3, 5, 1, -3},
                                   {511, -7, 2, 1}, {7, 1, -1, 7}, {13, -512, 0, -8}};
    for (int code = 0; code <= 12; ++code)
        for (int i = 0; const auto& [m, b, bExponent, rExponent] : kFactors)
            lines += Line(sensor, Formula(i++ % kFormats, code, m, b, bExponent, rExponent));
    return lines;
}
