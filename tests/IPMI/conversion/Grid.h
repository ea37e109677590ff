// SPDX-License-Identifier: MIT
//
// The results of many conversions as text, to be compared between builds.
#ifndef TALVANE_TESTS_IPMI_CONVERSION_GRID_H
#define TALVANE_TESTS_IPMI_CONVERSION_GRID_H

#include <string>

// The formula of a sensor, as a sensor data record states it.
struct GridFormula {
    unsigned char unit1;
    unsigned char linearization;
    int m;
    int b;
    int bExponent;
    int resultExponent;
};

// The conversions that are compared.
class Conversions {
public:
    virtual ~Conversions() = default;
    virtual double ValueOf(const GridFormula& formula, unsigned char raw) = 0;
    virtual unsigned char RawOf(const GridFormula& formula, double value) = 0;
    // The unit text, written over `size` zeroed bytes.
    virtual void WriteUnit(unsigned char unit1, unsigned char base, unsigned char modifier,
                           char* out, int size) = 0;
};

// One line for each of some hundred formulas: the formula and, of all 256 raw bytes, a hash of the
// values' bits and one of the bytes that the values become again. Then one line for each Unit 1
// byte: a hash of the unit texts that it makes of several base and modifier units.
std::string ConversionGrid(Conversions& conversions);

#endif
