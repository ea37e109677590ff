// SPDX-License-Identifier: MIT
//
// Reading of little-endian values out of bytes that came from hardware or firmware. Bytes past the
// end of what is at hand read as zero, so no length has to be checked first.
#ifndef TALVANE_BASE_BYTES_H
#define TALVANE_BASE_BYTES_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace talvane {

// Borrowed; never outlives the buffer it was made from.
using ByteView = std::span<const unsigned char>;

constexpr std::uint8_t ByteAt(ByteView bytes, std::size_t offset) {
    return offset < bytes.size() ? bytes[offset] : std::uint8_t{0};
}

constexpr std::uint16_t Le16(ByteView bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(ByteAt(bytes, offset) | (ByteAt(bytes, offset + 1) << 8));
}

constexpr std::uint32_t Le32(ByteView bytes, std::size_t offset) {
    return Le16(bytes, offset) | (std::uint32_t{Le16(bytes, offset + 2)} << 16);
}

// The two bytes of a 16-bit value on its way out; what lies above them is dropped.
constexpr unsigned char LowByte(int value) {
    return static_cast<unsigned char>(value & 0xFF);
}

constexpr unsigned char HighByte(int value) {
    return static_cast<unsigned char>((value >> 8) & 0xFF);
}

}  // namespace talvane

#endif
