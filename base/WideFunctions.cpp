// SPDX-License-Identifier: MIT
//
// How large the errors are, in units of E = 2^(1 - 32 * size). Cutting off costs an operation less
// than 1 E of its result, a sum of different signs less than 1 E of its larger operand.
//
//   Logarithm        10 E. 2 artanh r has 3.3 E: 1 each of ratio, series and sum, and 0.3 of the
//                    series' own. Each constant has 1 E, its product another, and each sum one. It
//                    comes to most just above 11/8: 3.1 E for a logarithm of 0.318.
//   WideLogarithm10  12 E: the constant and the product add one each.
//   PowerOf2         2^10 E: the series and 1 make 2.6 E, and each of eight squarings doubles the
//                    error and adds 1 E.
//   WidePower        2^14 E. Constant and products make 13 E of the exponent of 2, the fraction of
//                    that exponent 2 more. As doubles end at exponents of 2^10.1, this is less than
//                    2^13.6 E of the power, to which PowerOf2 adds its own.

#include "base/WideFunctions.h"

#include "base/WideConstants.h"

namespace talvane {
namespace {

// ln value
WideNumber Logarithm(double value, int size) {
    // value = scaled * 2^power, where scaled is from 11/16 to 22/16.
    constexpr std::uint32_t kElevenSixteenths = 0xB0000000;
    WideNumber scaled = Widened(value, size);
    const std::uint32_t firstDigits = scaled.fraction.words[0];
    const int doubled = firstDigits < kElevenSixteenths ? 1 : 0;
    const int power = scaled.exponent - doubled;
    scaled.exponent = doubled;

    // ln scaled = ln center + 2 artanh ((scaled - center) / (scaled + center)), where center is the
    // nearest eighth: 6/8 to 11/8.
    constexpr int kSixteenths = kWordDigits - 4;
    const int sixteenths = static_cast<int>(firstDigits >> (kSixteenths - doubled));
    const int eighths = (sixteenths + 1) / 2;
    const WideNumber center = Widened(eighths / 8.0, size);
    const WideNumber ratio = Ratio(scaled - center, scaled + center);

    // artanh r = r + r (r^2 / 3 + r^2 (r^2 / 5 + r^2 (r^2 / 7 + ... As r is at most 1/23, each term
    // is less than the one before by 2^9 and more: 3.5 terms make a word's digits.
    const WideNumber squared = ratio * ratio;
    const WideFraction square = squared.fraction >> -squared.exponent;
    WideFraction series{size, {}};
    for (unsigned term = 7 * static_cast<unsigned>(size) / 2; term > 0; --term)
        series = square / (2 * term + 1) + square * series;
    WideNumber twice = ratio + ratio * Widened(series);
    ++twice.exponent;
    return Widened(power, size) * kLogarithmOf2 + kLogarithmsOfEighths[eighths - kFirstEighths] +
           twice;
}

// 2^value
WideNumber PowerOf2(const WideNumber& value, int size) {
    // From 2^11 on the power is past all doubles, whatever its digits are.
    constexpr int kPastDoubles = 11;
    if (value.exponent > kPastDoubles) {
        WideNumber power = kOne;
        power.exponent = value.negative ? -(1 << kPastDoubles) : 1 << kPastDoubles;
        return power;
    }
    int whole = 0;
    if (value.exponent > 0)
        whole = static_cast<int>(value.fraction.words[0] >> (kWordDigits - value.exponent));
    if (value.negative) whole = -whole - 1;

    // 2^rest = (e^x)^256, where x = rest * ln 2 / 256, and e^x = 1 + x/1 (1 + x/2 (1 + x/3 (1 + ...
    // As x is below 2^-8.5, each term is less than the one before by 2^8.5 and its own number:
    // three terms make a word's digits.
    constexpr int kSquarings = 8;
    const WideNumber rest = (value - Widened(whole, size)) * kLogarithmOf2;
    const WideFraction x = rest.fraction >> (kSquarings - rest.exponent);
    WideFraction series{size, {}};
    for (unsigned term = 3 * static_cast<unsigned>(size); term > 0; --term)
        series = (x + x * series) / term;
    WideNumber power = kOne + Widened(series);
    for (int i = 0; i < kSquarings; ++i) power = power * power;
    power.exponent += whole;
    return power;
}

}  // namespace

WideNumber WidePower(double base, double exponent, int size) {
    return PowerOf2(Widened(exponent, size) * Logarithm(base, size) * kInverseLogarithmOf2, size);
}

WideNumber WideNaturalLogarithm(double value, double, int size) {
    return Logarithm(value, size);
}

WideNumber WideLogarithm10(double value, double, int size) {
    return Logarithm(value, size) * kInverseLogarithmOf10;
}

WideNumber LargestError(const WideNumber& result) {
    // A unit of the last digit is E / 2 of the result or more, so 2^14 E are 2^15 units or less.
    constexpr int kErrorDigits = 16;
    WideNumber error = kOne;
    error.exponent = result.exponent - result.fraction.size * kWordDigits + kErrorDigits + 1;
    return error;
}

}  // namespace talvane
