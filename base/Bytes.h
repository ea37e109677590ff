// SPDX-License-Identifier: MIT
//
// Reads little-endian values out of bytes that came from hardware or firmware. Bytes past the end
// of the view are zero, so callers need not check its length first.
#ifndef TALVANE_BASE_BYTES_H
#define TALVANE_BASE_BYTES_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace talvane {

// Borrowed bytes with their length. A view must not outlive the buffer that it was made from.
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

// The two bytes of a 16-bit value that is sent out. Higher bits are dropped.
constexpr unsigned char LowByte(int value) {
    return static_cast<unsigned char>(value & 0xFF);
}

constexpr unsigned char HighByte(int value) {
    return static_cast<unsigned char>((value >> 8) & 0xFF);
}

}  // namespace talvane

#endif
