// SPDX-License-Identifier: MIT
//
// Arguments of all kinds. A program uses the same ones for the same seed.
#ifndef TALVANE_TESTS_BASE_RANDOMARGUMENTS_H
#define TALVANE_TESTS_BASE_RANDOMARGUMENTS_H

#include <cstdint>
#include <random>

class RandomArguments {
public:
    explicit RandomArguments(std::uint64_t seed) : random_(seed) {}

    // Any 64 bits: every exponent is as likely as every other, infinity and NaN included.
    double AnyDouble();
    // Above 0; of any exponent, of a sensor's, or near 1.
    double Positive();
    // To go with a base above 0: the power lies anywhere from the least to the largest double,
    // often near 1, and sometimes beyond the ends.
    double ExponentFor(double base);
    // A double whose exponent is at most `distance` away from the other's, of any sign.
    double Near(double other, int distance);

private:
    // A number of 53 digits from 1 to 2.
    double Digits();
    // `low` to `high` inclusive.
    int Between(int low, int high);

    std::mt19937_64 random_;
};

#endif
