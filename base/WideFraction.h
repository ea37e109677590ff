// SPDX-License-Identifier: MIT
//
// Fractions of up to 256 binary digits, computed in integers alone.
#ifndef TALVANE_BASE_WIDEFRACTION_H
#define TALVANE_BASE_WIDEFRACTION_H

#include <cstdint>

namespace talvane {

constexpr int kWordDigits = 32;
constexpr int kMaxWords = 8;

constexpr std::uint32_t HighWord(std::uint64_t value) {
    return static_cast<std::uint32_t>(value >> kWordDigits);
}

constexpr std::uint32_t LowWord(std::uint64_t value) {
    return static_cast<std::uint32_t>(value);
}

// 0.words, below 1. Both operands of an operation have the same size, and so has its result, which
// is cut off after its last digit.
struct WideFraction {
    int size;                        // words in use
    std::uint32_t words[kMaxWords];  // the most significant first
};

// The sum is below 1.
WideFraction operator+(const WideFraction& a, const WideFraction& b);
WideFraction operator*(const WideFraction& a, const WideFraction& b);
// The divisor is 1 to 65535.
WideFraction operator/(const WideFraction& dividend, unsigned divisor);
// Divided by 2^digits.
WideFraction operator>>(const WideFraction& fraction, int digits);

// The same on rows of `size` words.
// sum += addend. Returns whether there is a carry.
bool AddWords(const std::uint32_t* addend, std::uint32_t* sum, int size);
// difference -= subtrahend, which is not larger.
void SubtractWords(const std::uint32_t* subtrahend, std::uint32_t* difference, int size);
// The product has twice as many words, so that no digit is lost.
void MultiplyWords(const std::uint32_t* a, const std::uint32_t* b, std::uint32_t* product,
                   int size);

}  // namespace talvane

#endif
