// SPDX-License-Identifier: MIT
//
// From doubles to wide numbers, and back with one rounding.

#include "base/WideNumber.h"

#include <algorithm>
#include <bit>

namespace talvane {
namespace {

// A double (IEEE 754, 3.4): sign, 11 bits of exponent, 52 bits of fraction.
constexpr int kFractionDigits = 52;
// The first digit of a normal double, which is not stored.
constexpr std::uint64_t kImplicitDigit = std::uint64_t{1} << kFractionDigits;
constexpr int kExponentMask = 0x7FF;
constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
constexpr std::uint64_t kInfinityBits = std::uint64_t{kExponentMask} << kFractionDigits;
// 1 is 0.1 * 2^1 here and has 1023 in the field of the exponent there.
constexpr int kExponentBias = 1022;
// The least double is 2^-1074.
constexpr int kLowestDigit = 1074;

// Of a fraction's first word.
constexpr std::uint32_t kFirstDigit = 0x80000000;

constexpr std::uint64_t Joined(std::uint32_t high, std::uint32_t low) {
    return std::uint64_t{high} << kWordDigits | low;
}

// The number 0.words * 2^exponent, where the first digits may be 0.
WideNumber Normalised(const std::uint32_t* words, int count, int exponent, bool negative,
                      int size) {
    WideNumber number{false, kExponentOf0, {size, {}}};
    int first = 0;
    while (first < count && words[first] == 0) ++first;
    if (first == count) return number;
    const int zeros = std::countl_zero(words[first]);
    number.negative = negative;
    number.exponent = exponent - first * kWordDigits - zeros;
    for (int i = 0; i < size && first < count; ++i) {
        const std::uint32_t word = words[first++];
        const std::uint32_t next = first < count ? words[first] : 0;
        number.fraction.words[i] = word << zeros | next >> 1 >> (kWordDigits - 1 - zeros);
    }
    return number;
}

bool IsSmaller(const WideNumber& a, const WideNumber& b, int size) {
    if (a.exponent != b.exponent) return a.exponent < b.exponent;
    const std::uint32_t* const words = a.fraction.words;
    return std::lexicographical_compare(words, words + size, b.fraction.words,
                                        b.fraction.words + size);
}

int CommonSize(const WideNumber& a, const WideNumber& b) {
    return std::min(a.fraction.size, b.fraction.size);
}

std::uint64_t FirstDigits(const WideNumber& number) {
    return Joined(number.fraction.words[0], number.fraction.words[1]);
}

}  // namespace

WideNumber Widened(double value, int size) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int field = static_cast<int>(bits >> kFractionDigits) & kExponentMask;
    std::uint64_t digits = bits & (kImplicitDigit - 1);
    if (field != 0) digits |= kImplicitDigit;
    constexpr int kLeadingZeros = 2 * kWordDigits - (kFractionDigits + 1);
    const int exponent = std::max(field, 1) - kExponentBias + kLeadingZeros;
    const std::uint32_t words[] = {HighWord(digits), LowWord(digits)};
    return Normalised(words, 2, exponent, (bits & kSign) != 0, size);
}

WideNumber Widened(const WideFraction& fraction) {
    return Normalised(fraction.words, fraction.size, 0, false, fraction.size);
}

double Nearest(const WideNumber& number) {
    std::uint64_t bits = 0;
    // Fewer digits below the normal range; none for half of the least double.
    const int count = std::min(kFractionDigits + 1, number.exponent + kLowestDigit);
    if (number.exponent + kExponentBias >= kExponentMask) {
        bits = kInfinityBits;
    } else if (count >= 0) {
        std::uint64_t digits = FirstDigits(number);
        for (int i = 2; i < number.fraction.size; ++i)
            if (number.fraction.words[i] != 0) digits |= 1;  // not halfway
        constexpr std::uint64_t kHalf = std::uint64_t{1} << 63;
        const std::uint64_t rest = digits << count;
        bits = count == 0 ? 0 : digits >> (2 * kWordDigits - count);
        if (rest > kHalf || (rest == kHalf && bits % 2 != 0)) ++bits;
        // The first digit of a normal double counts as 1 in the field of the exponent, and so does
        // a carry out of the digits.
        const int field = std::max(number.exponent + kExponentBias - 1, 0);
        bits += static_cast<std::uint64_t>(field) << kFractionDigits;
    }
    return std::bit_cast<double>(number.negative ? bits | kSign : bits);
}

WideNumber operator-(const WideNumber& number) {
    WideNumber negated = number;
    negated.negative = !number.negative;
    return negated;
}

WideNumber operator+(const WideNumber& a, const WideNumber& b) {
    const int size = CommonSize(a, b);
    const bool swapped = IsSmaller(a, b, size);
    const WideNumber& small = swapped ? a : b;
    const WideFraction addend = small.fraction >> ((swapped ? b : a).exponent - small.exponent);
    WideNumber sum = swapped ? b : a;
    std::uint32_t* const words = sum.fraction.words;
    sum.fraction.size = size;
    if (a.negative != b.negative) {
        SubtractWords(addend.words, words, size);
        return Normalised(words, size, sum.exponent, sum.negative, size);
    }
    if (AddWords(addend.words, words, size)) {
        sum.fraction = sum.fraction >> 1;
        words[0] |= kFirstDigit;
        ++sum.exponent;
    }
    return sum;
}

WideNumber operator-(const WideNumber& a, const WideNumber& b) {
    return a + -b;
}

WideNumber operator*(const WideNumber& a, const WideNumber& b) {
    const int size = CommonSize(a, b);
    std::uint32_t product[2 * kMaxWords];
    MultiplyWords(a.fraction.words, b.fraction.words, product, size);
    return Normalised(product, 2 * size, a.exponent + b.exponent, a.negative != b.negative, size);
}

WideNumber Ratio(const WideNumber& dividend, const WideNumber& divisor) {
    // 63 digits each, so that the rest can be doubled.
    const std::uint64_t unit = FirstDigits(divisor) >> 1;
    std::uint64_t rest = FirstDigits(dividend) >> 1;
    if (rest == 0) return dividend;
    WideNumber ratio{dividend.negative != divisor.negative,
                     dividend.exponent - divisor.exponent + 1,
                     {CommonSize(dividend, divisor), {}}};
    if (rest < unit) {
        rest <<= 1;
        --ratio.exponent;
    }
    for (int i = 0; i < ratio.fraction.size; ++i) {
        std::uint32_t word = 0;
        for (int digit = 0; digit < kWordDigits; ++digit) {
            word <<= 1;
            if (rest >= unit) {
                rest -= unit;
                ++word;
            }
            rest <<= 1;
        }
        ratio.fraction.words[i] = word;
    }
    if (rest != 0) ratio.fraction.words[ratio.fraction.size - 1] |= 1;
    return ratio;
}

}  // namespace talvane
