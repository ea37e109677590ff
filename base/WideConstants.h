// SPDX-License-Identifier: MIT
//
// The first 256 binary digits of the numbers that powers and logarithms are computed with: sign,
// exponent, words.
#ifndef TALVANE_BASE_WIDECONSTANTS_H
#define TALVANE_BASE_WIDECONSTANTS_H

#include "base/WideNumber.h"

namespace talvane {

// 1
inline constexpr WideNumber kOne{false, 1, 8, 0x80000000};

// ln 2
inline constexpr WideNumber kLogarithmOf2{false,      0,          8,          0xB17217F7,
                                          0xD1CF79AB, 0xC9E3B398, 0x03F2F6AF, 0x40F34326,
                                          0x7298B62D, 0x8A0D175B, 0x8BAAFA2B};

// 1 / ln 2
inline constexpr WideNumber kInverseLogarithmOf2{false,      1,          8,          0xB8AA3B29,
                                                 0x5C17F0BB, 0xBE87FED0, 0x691D3E88, 0xEB577AA8,
                                                 0xDD695A58, 0x8B25166C, 0xD1A13247};

// 1 / ln 10
inline constexpr WideNumber kInverseLogarithmOf10{false,      -1,         8,          0xDE5BD8A9,
                                                  0x37287195, 0x355BAAAF, 0xAD33DC32, 0x3EE34602,
                                                  0x45C9A202, 0x3A3F2D44, 0xF78EA53C};

// ln (6/8), ln (7/8), ... ln (11/8)
inline constexpr int kFirstEighths = 6;
inline constexpr WideNumber kLogarithmsOfEighths[] = {
    {true, -1, 8, 0x934B1089, 0xA6DC93C1, 0xDF5BB3B6, 0x0554E151, 0x87A486E6, 0x5AA1BCD5,
     0xAD047F99, 0x8C197D96},
    {true, -2, 8, 0x88BC7411, 0x3F23DEF1, 0x9C5A0FE3, 0x96F40F1D, 0xDA8FEC3C, 0x24B78A37,
     0xBF07ED54, 0xC028B125},
    {false, kExponentOf0, {8, {}}},
    {false, -3, 8, 0xF1383B71, 0x57972F4F, 0x543FFF0F, 0xF4F0AAED, 0xCA75E200, 0xBFB7CABE,
     0xE844BE0F, 0xFC8BE4AC},
    {false, -2, 8, 0xE47FBE3C, 0xD4D10D61, 0x2EC0F797, 0xFDCD1257, 0x1D97A9D0, 0x46B706C5,
     0xC3C4CFD5, 0x92FF1D1A},
    {false, -1, 8, 0xA30C5E10, 0xE2F613E8, 0x5BD9BD99, 0xE39A20AE, 0xE59A4980, 0x16887279,
     0x6BDD6AB9, 0x52E7F931},
};

}  // namespace talvane

#endif
