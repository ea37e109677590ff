// SPDX-License-Identifier: MIT
//
// Raw readings into values and back.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include "simulator/SimulatedServer.h"
#include "support/OpenIpmi.h"

namespace {

constexpr unsigned char kUnsigned = 0x00;
constexpr unsigned char kOnesComplement = 0x40;
constexpr unsigned char kTwosComplement = 0x80;
constexpr unsigned char kNoAnalog = 0xC0;

class ConversionTest : public ::testing::Test {
protected:
    static SensorFormulaParameter Formula(int m, int b, int bExponent, int rExponent,
                                          unsigned char unit1 = kUnsigned, int linearization = 0) {
        SensorFormulaParameter formula{};
        formula.Unit1 = unit1;
        formula.SensorLinearization = static_cast<unsigned char>(linearization);
        formula.M = static_cast<short>(m);
        formula.B = static_cast<short>(b);
        formula.BExp = static_cast<signed char>(bExponent);
        formula.RExp = static_cast<signed char>(rExponent);
        return formula;
    }
    double Value(const SensorFormulaParameter& formula, int raw) {
        double value = -77;
        EXPECT_EQ(sensor.GetReadingConversion(formula, static_cast<unsigned char>(raw), value), 0);
        return value;
    }
    int Raw(const SensorFormulaParameter& formula, double value) {
        unsigned char raw = 0x77;
        EXPECT_EQ(sensor.GetValueConversion(formula, raw, value), 0);
        return raw;
    }
    // The identity with a linearization.
    static SensorFormulaParameter Linear(int code) { return Formula(1, 0, 0, 0, kUnsigned, code); }

    sim::SimulatedServer server;
    Sensor sensor;
};

TEST_F(ConversionTest, OneHundredFiftyStepsOfTwoHundredthsAreThree) {
    EXPECT_EQ(Value(Formula(2, 0, 0, -2), 150), 3.0);
}

TEST_F(ConversionTest, OffsetAndExponentsCount) {
    EXPECT_EQ(sensor.GetFormulaInput(Formula(3, 5, 2, 1), 7), (3 * 7 + 500) * 10.0);
    EXPECT_EQ(sensor.GetFormulaInput(Formula(-3, -5, -1, 0), 255), -765.5);
}

TEST_F(ConversionTest, OnesComplementReadingsAreMagnitudes) {
    const SensorFormulaParameter formula = Formula(1, 0, 0, 0, kOnesComplement);
    EXPECT_EQ(Value(formula, 0xFE), 1.0);
    EXPECT_EQ(Value(formula, 0x01), 254.0);
    EXPECT_EQ(Value(formula, 0x00), 255.0);
}

TEST_F(ConversionTest, TwosComplementReadingsAreMagnitudes) {
    const SensorFormulaParameter formula = Formula(1, 0, 0, 0, kTwosComplement);
    EXPECT_EQ(Value(formula, 0xFF), 1.0);
    EXPECT_EQ(Value(formula, 0x01), 255.0);
    EXPECT_EQ(Value(formula, 0x00), 0.0);
    EXPECT_EQ(Value(formula, 0x80), 128.0);
}

TEST_F(ConversionTest, WithoutAnalogReadingEveryByteIsZero) {
    for (int raw = 0; raw < 256; ++raw)
        EXPECT_EQ(Value(Formula(1, 100, 0, 0, kNoAnalog), raw), 0.0) << raw;
}

TEST_F(ConversionTest, WithoutAnalogReadingTheLinearizationStillApplies) {
    for (const int code : {4, 5, 6})
        EXPECT_EQ(Value(Formula(1, 100, 0, 0, kNoAnalog, code), 9), 1.0) << code;
}

TEST_F(ConversionTest, EveryLinearizationIsItsFunction) {
    EXPECT_EQ(Value(Linear(0), 5), 5.0);
    EXPECT_EQ(Value(Linear(1), 5), 1.6094379124341003);
    EXPECT_EQ(Value(Linear(2), 5), 0.6989700043360189);
    EXPECT_EQ(Value(Linear(3), 5), 2.3219280948873626) << "of two logarithms, rounded each";
    EXPECT_EQ(Value(Linear(4), 5), 148.88279736320004);
    EXPECT_EQ(Value(Linear(5), 5), 100000.0);
    EXPECT_EQ(Value(Linear(6), 5), 32.0);
    EXPECT_EQ(Value(Linear(7), 5), 0.2);
    EXPECT_EQ(Value(Linear(8), 5), 25.0);
    EXPECT_EQ(Value(Linear(9), 5), 125.0);
    EXPECT_EQ(Value(Linear(10), 49), 7.0);
    EXPECT_EQ(Value(Linear(11), 5), 1.7008268430839244);
    for (const int code : {12, 13, 0x70, 0x7F}) EXPECT_EQ(Value(Linear(code), 5), 0.0) << code;
}

TEST_F(ConversionTest, OnlyTheLowSevenBitsSelectTheLinearization) {
    EXPECT_EQ(Value(Linear(0x86), 5), 32.0);
    EXPECT_EQ(Raw(Linear(0x86), 32.0), 5);
}

TEST_F(ConversionTest, ValuesOutsideOfALinearizationAreZero) {
    for (const int code : {1, 2, 3, 7}) EXPECT_EQ(Value(Linear(code), 0), 0.0) << code;
    const auto negative = [](int code) { return Formula(-1, 0, 0, 0, kUnsigned, code); };
    for (const int code : {1, 2, 3, 10}) EXPECT_EQ(Value(negative(code), 5), 0.0) << code;
    EXPECT_EQ(Value(Linear(10), 0), 0.0);
    EXPECT_EQ(Value(negative(7), 5), -0.2);
    EXPECT_TRUE(std::isnan(Value(negative(11), 5))) << "no guard there";
}

TEST_F(ConversionTest, LogarithmsAndRootsReachBelowOne) {
    const auto half = [](int code) { return Formula(5, 0, 0, -1, kUnsigned, code); };
    EXPECT_EQ(Value(half(1), 1), -0.6931471805599453);
    EXPECT_EQ(Value(half(2), 1), -0.3010299956639812);
    EXPECT_EQ(Value(half(3), 1), -1.0);
    EXPECT_EQ(Value(Formula(25, 0, 0, -2, kUnsigned, 10), 1), 0.5);
}

// Back.

TEST_F(ConversionTest, TheInverseTruncates) {
    EXPECT_EQ(Raw(Formula(2, 0, 0, -2), 3.0), 150);
    EXPECT_EQ(Raw(Formula(2, 0, 0, -2), 3.019), 150);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0), 41.999), 41);
    EXPECT_EQ(Raw(Formula(1, -10, 0, 0), -10.9), 0) << "toward zero";
    EXPECT_EQ(Raw(Formula(1, 0, 0, -1), 0.3), 2) << "0.3 by 0.1 is a little below 3";
}

TEST_F(ConversionTest, TheInverseTakesOffsetAndExponentsOut) {
    EXPECT_EQ(Raw(Formula(3, 5, 2, 1), 5210), 7);
    EXPECT_EQ(Raw(Formula(-2, 100, 0, 0), 40.0), 30);
}

TEST_F(ConversionTest, WithoutAMultiplierEveryValueIsRawZero) {
    for (const double value : {-5.0, 0.0, 1.0, 1e300})
        EXPECT_EQ(Raw(Formula(0, 7, 0, 0), value), 0);
    EXPECT_EQ(Raw(Formula(0, 0, 0, 0, kOnesComplement), 1.0), 0xFF) << "the format still applies";
}

TEST_F(ConversionTest, TheLowByteOfSixteenBitsIsKept) {
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0), 0x1234), 0x34);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0), -1.0), 0xFF);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0), 32767.9), 0xFF);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0), 32768.0), 0x00);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0), 32801.0), 0x00) << "does not fit 16 bits";
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0), -32768.9), 0x00);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0), -32801.0), 0x00);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0), std::numeric_limits<double>::quiet_NaN()), 0x00);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0), std::numeric_limits<double>::infinity()), 0x00);
}

TEST_F(ConversionTest, TheInverseOfEveryLinearization) {
    EXPECT_EQ(Raw(Linear(1), 2.0), 16) << "base 4";
    EXPECT_EQ(Raw(Linear(2), 2.0), 100);
    EXPECT_EQ(Raw(Linear(3), 5.0), 32);
    EXPECT_EQ(Raw(Linear(4), 150.0), 5);
    EXPECT_EQ(Raw(Linear(5), 1e6), 6);
    EXPECT_EQ(Raw(Linear(6), 300.0), 8);
    EXPECT_EQ(Raw(Linear(7), 0.25), 4);
    EXPECT_EQ(Raw(Linear(7), -0.25), 0xFC) << "-4";
    EXPECT_EQ(Raw(Linear(8), 50.0), 7);
    EXPECT_EQ(Raw(Linear(9), 1e6), 99) << "to the power 0.333";
    EXPECT_EQ(Raw(Linear(9), 27.0001), 2) << "not a third";
    EXPECT_EQ(Raw(Linear(10), 7.0), 49);
    EXPECT_EQ(Raw(Linear(11), 5.0), 125);
    EXPECT_EQ(Raw(Linear(12), 5.0), 0);
    EXPECT_EQ(Raw(Linear(0x7F), 5.0), 0);
}

TEST_F(ConversionTest, WhatCannotBeUndoneIsRawZeroInEveryFormat) {
    for (const unsigned char format : {kUnsigned, kOnesComplement, kTwosComplement}) {
        const auto linear = [=](int code) { return Formula(1, 0, 0, 0, format, code); };
        for (const int code : {4, 5, 6}) {
            EXPECT_EQ(Raw(linear(code), 0.0), 0) << code;
            EXPECT_EQ(Raw(linear(code), -1.0), 0) << code;
        }
        EXPECT_EQ(Raw(linear(7), 0.0), 0);
        EXPECT_EQ(Raw(linear(8), -1.0), 0);
        EXPECT_EQ(Raw(linear(12), 5.0), 0);
    }
}

TEST_F(ConversionTest, TheRootOfZeroAndOfNoNumberGoesOnToTheFormula) {
    constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Raw(Formula(1, -7, 0, 0, kUnsigned, 8), 0.0), 7);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0, kOnesComplement, 8), 0.0), 0xFF);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0, kOnesComplement, 8), kNotANumber), 0xFF);
}

TEST_F(ConversionTest, TheFormatIsAppliedToTheRawByte) {
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0, kOnesComplement), 1.0), 0xFE);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0, kTwosComplement), 1.0), 0xFF);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0, kTwosComplement), 0.0), 0x00);
    EXPECT_EQ(Raw(Formula(1, 0, 0, 0, kNoAnalog), 5.0), 5);
    unsigned char raw = 0x0F;
    EXPECT_EQ(sensor.ValueConversion(Formula(1, 0, 0, 0, kOnesComplement), raw), 0);
    EXPECT_EQ(raw, 0xF0);
}

// Rounding: values are the decimals nearest to the exact result of a step's operands.

TEST_F(ConversionTest, LinearizationsRoundTheExactResultOnce) {
    // The functions of doubles of a 64-bit C library are off by one in the last digit of all but
    // the last of these.
    EXPECT_EQ(Value(Formula(1, 0, 0, -1, kUnsigned, 4), 214), 1994226790.7218695);
    EXPECT_EQ(Value(Formula(2, 0, 0, -1, kUnsigned, 5), 191), 1.5848931924611238e38);
    // Half way between two doubles.
    EXPECT_EQ(Value(Linear(5), 23), 1e23);
    EXPECT_EQ(Value(Formula(4161, 0, 0, 0, kUnsigned, 9), 63), 18014192351838208.0) << "262143";
}

TEST_F(ConversionTest, ResultsBeyondADoubleAreInfiniteOrZero) {
    const auto power = [](int m, int code) { return Formula(m, 0, 0, 1, kUnsigned, code); };
    for (const int code : {4, 5, 6}) {
        EXPECT_EQ(Value(power(20, code), 100), std::numeric_limits<double>::infinity()) << code;
        EXPECT_EQ(Value(power(-20, code), 100), 0.0) << code;
    }
    EXPECT_EQ(Value(Formula(-1, 0, 0, 0, kUnsigned, 5), 255), 1e-255);
    EXPECT_EQ(Value(Formula(-3, 0, 0, 0, kUnsigned, 5), 107), 1e-321) << "below the normal ones";
    EXPECT_EQ(Value(Formula(1, 0, 0, 127, kUnsigned, 9), 5),
              std::numeric_limits<double>::infinity());
}

TEST_F(ConversionTest, EveryExponentIsItsPowerOfTen) {
    for (int exponent = -128; exponent < 128; ++exponent) {
        const double power = std::stod("1e" + std::to_string(exponent));
        EXPECT_EQ(sensor.GetFormulaInput(Formula(1, 0, 0, exponent), 1), power) << exponent;
        EXPECT_EQ(sensor.GetFormulaInput(Formula(0, 1, exponent, 0), 1), power) << exponent;
    }
}

// Compared with results of a processor that computes in doubles. The bits of all results of 255 raw
// bytes are mixed into one number.
std::uint64_t Mixed(std::uint64_t sum, double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return sum * 1099511628211u ^ bits;
}

TEST_F(ConversionTest, EveryStepRoundsToADouble) {
    // y = (M x + B 10^BExp) 10^RExp, where two roundings in a row would differ.
    EXPECT_EQ(Value(Formula(1, 1, -1, -1), 3), 0.31000000000000005);
    std::uint64_t sum = 0;
    for (int m = -512; m < 512; m += 7)
        for (int r = -8; r < 8; ++r)
            for (int x = 0; x < 255; x += 2) {
                const SensorFormulaParameter formula = Formula(m, 333, r, r);
                sum = Mixed(sum, sensor.GetFormulaInput(formula, static_cast<unsigned char>(x)));
            }
    EXPECT_EQ(sum, 0x3C44BEB07C9FE6F3u);
}

}  // namespace
