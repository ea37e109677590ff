// SPDX-License-Identifier: MIT
//
// Entry points written byte by byte, for the cases that a proper firmware does not produce.
#ifndef TALVANE_TESTS_SUPPORT_ENTRYPOINTIMAGE_H
#define TALVANE_TESTS_SUPPORT_ENTRYPOINTIMAGE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

inline void PutText(std::uint8_t* at, std::string_view text) {
    for (const char c : text) *at++ = static_cast<std::uint8_t>(c);
}

inline void PutLe(std::uint8_t* at, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) *at++ = static_cast<std::uint8_t>(value >> (8 * i));
}

struct TableLocation {
    std::uint32_t address;
    std::uint16_t length;
    std::uint16_t structures;
};

// SMBIOS 2.3.4, section 2.1.1. Bytes that nothing reads carry values of their own, so that a copy
// can be told byte by byte; the checksums are wrong.
inline std::array<std::uint8_t, 31> SmbiosEntryImage(const TableLocation& table) {
    std::array<std::uint8_t, 31> image;
    for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<std::uint8_t>(0xC0 + i);
    PutText(&image[0], "_SM_");
    image[5] = 31;
    image[6] = 2;
    image[7] = 3;
    PutText(&image[16], "_DMI_");
    PutLe(&image[22], table.length, 2);
    PutLe(&image[24], table.address, 4);
    PutLe(&image[28], table.structures, 2);
    return image;
}

// The entry point of the DMI table that came before.
inline std::array<std::uint8_t, 15> DmiEntryImage(const TableLocation& table) {
    std::array<std::uint8_t, 15> image;
    PutText(&image[0], "_DMI_");
    image[5] = 0xD5;
    PutLe(&image[6], table.length, 2);
    PutLe(&image[8], table.address, 4);
    PutLe(&image[12], table.structures, 2);
    image[14] = 0x20;
    return image;
}

#endif
