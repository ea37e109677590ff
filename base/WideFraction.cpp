// SPDX-License-Identifier: MIT
//
// Arithmetic of words, the highest word first.

#include "base/WideFraction.h"

#include <algorithm>

namespace talvane {

bool AddWords(const std::uint32_t* addend, std::uint32_t* sum, int size) {
    std::uint32_t carry = 0;
    for (int i = size; i-- > 0;) {
        const std::uint64_t word = std::uint64_t{sum[i]} + addend[i] + carry;
        sum[i] = LowWord(word);
        carry = HighWord(word);
    }
    return carry != 0;
}

void SubtractWords(const std::uint32_t* subtrahend, std::uint32_t* difference, int size) {
    std::uint32_t borrow = 0;
    for (int i = size; i-- > 0;) {
        const std::uint64_t word = std::uint64_t{difference[i]} - subtrahend[i] - borrow;
        difference[i] = LowWord(word);
        borrow = HighWord(word) & 1;
    }
}

void MultiplyWords(const std::uint32_t* a, const std::uint32_t* b, std::uint32_t* product,
                   int size) {
    std::fill_n(product, 2 * size, 0);
    for (int i = size; i-- > 0;) {
        if (a[i] == 0) continue;  // of a double all but two
        std::uint32_t* const row = product + i + 1;
        std::uint32_t carry = 0;
        for (int j = size; j-- > 0;) {
            const std::uint64_t word = std::uint64_t{a[i]} * b[j] + row[j] + carry;
            row[j] = LowWord(word);
            carry = HighWord(word);
        }
        product[i] = carry;
    }
}

WideFraction operator+(const WideFraction& a, const WideFraction& b) {
    WideFraction sum = a;
    (void)AddWords(b.words, sum.words, sum.size);  // result not used: the sum is below 1
    return sum;
}

WideFraction operator*(const WideFraction& a, const WideFraction& b) {
    std::uint32_t digits[2 * kMaxWords];
    MultiplyWords(a.words, b.words, digits, a.size);
    WideFraction product{a.size, {}};
    std::copy_n(digits, a.size, product.words);
    return product;
}

WideFraction operator/(const WideFraction& dividend, unsigned divisor) {
    constexpr int kHalf = kWordDigits / 2;
    constexpr unsigned kHalfMask = 0xFFFF;
    WideFraction quotient{dividend.size, {}};
    unsigned rest = 0;
    for (int i = 0; i < dividend.size; ++i) {
        const std::uint32_t word = dividend.words[i];
        const unsigned high = rest << kHalf | word >> kHalf;
        const unsigned low = high % divisor << kHalf | (word & kHalfMask);
        quotient.words[i] = high / divisor << kHalf | low / divisor;
        rest = low % divisor;
    }
    return quotient;
}

WideFraction operator>>(const WideFraction& fraction, int digits) {
    WideFraction moved{fraction.size, {}};
    const int words = digits / kWordDigits;
    const int bits = digits % kWordDigits;
    std::uint32_t previous = 0;
    for (int i = words; i < fraction.size; ++i) {
        const std::uint32_t word = fraction.words[i - words];
        moved.words[i] = previous << 1 << (kWordDigits - 1 - bits) | word >> bits;
        previous = word;
    }
    return moved;
}

}  // namespace talvane
