// SPDX-License-Identifier: MIT
//
// The header of an entry in a tar file (POSIX.1-1988, "ustar"): a block of 512 bytes whose fields
// are texts. Numbers are written in octal digits.
#ifndef TALVANE_ARCHIVE_TARHEADER_H
#define TALVANE_ARCHIVE_TARHEADER_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace archive {

inline constexpr std::size_t kTarBlock = 512;

struct TarField {
    std::size_t at;
    std::size_t size;
};

inline constexpr TarField kTarName{0, 100};
inline constexpr TarField kTarMode{100, 8};
inline constexpr TarField kTarUser{108, 8};
inline constexpr TarField kTarGroup{116, 8};
inline constexpr TarField kTarSize{124, 12};
inline constexpr TarField kTarTime{136, 12};
inline constexpr TarField kTarChecksum{148, 8};
inline constexpr TarField kTarType{156, 1};
inline constexpr TarField kTarMagic{257, 8};  // with the version
inline constexpr TarField kTarPrefix{345, 155};

inline constexpr char kTarRegularFile = '0';

// The sum of the header's bytes, those of the checksum itself counted as blanks.
// REQUIRES: header has kTarBlock bytes.
unsigned TarChecksum(std::span<const std::uint8_t> header);

// The bytes that fill the last block of a file of this size.
constexpr std::size_t TarPadding(std::size_t size) {
    return (kTarBlock - size % kTarBlock) % kTarBlock;
}

}  // namespace archive

#endif
