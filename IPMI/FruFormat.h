// SPDX-License-Identifier: MIT
//
// How the inventory of a field-replaceable unit is stored: header, areas, field encodings and
// languages ("Platform Management FRU Information Storage Definition" 1.0, whose sections are
// cited).
#ifndef TALVANE_IPMI_FRUFORMAT_H
#define TALVANE_IPMI_FRUFORMAT_H

namespace talvane {

// Lengths and offsets are stored as multiples of this many bytes.
constexpr int kFruBlock = 8;

// The common header (8).
struct FruHeader {
    static constexpr unsigned kVersion = 0;
    static constexpr unsigned kInternalUseArea = 1;
    static constexpr unsigned kChassisArea = 2;
    static constexpr unsigned kBoardArea = 3;
    static constexpr unsigned kProductArea = 4;
    static constexpr unsigned kMultiRecordArea = 5;
    static constexpr unsigned char kLength = 8;
};

// The beginning of the chassis, board and product areas (10, 11, 12).
struct FruArea {
    static constexpr unsigned kVersion = 0;
    static constexpr unsigned kLength = 1;       // in blocks
    static constexpr unsigned kChassisType = 2;  // of the chassis area
    static constexpr unsigned kLanguage = 2;     // of the board and product areas
    static constexpr unsigned kFirstField = 3;
    static constexpr unsigned kFirstBoardField = 6;  // after the date of manufacture
    static constexpr unsigned char kHeadLength = 2;  // version and length
    static constexpr unsigned char kCurrentVersion = 1;
};

// A field's type/length byte (13): how the bytes that follow it are encoded, and how many they are.
enum FruEncoding { kFruBinary = 0, kFruBcdPlus = 1, kFruSixBit = 2, kFruLatin = 3 };
constexpr int kFruEncodingShift = 6;
constexpr unsigned char kFruLengthBits = 0x3F;

// The two language codes of English (15). Any other language has characters of two bytes.
constexpr unsigned char kFruEnglishByDefault = 0;
constexpr unsigned char kFruEnglish = 25;

}  // namespace talvane

#endif
