// SPDX-License-Identifier: MIT
//
// The processor's port instructions, one line each. The library executes them nowhere else.
// REQUIRES: I/O privilege level 3. Without it the processor refuses them, and the process ends.
#ifndef TALVANE_BASE_PORTIO_H
#define TALVANE_BASE_PORTIO_H

#include <cstdint>

namespace talvane {

inline std::uint8_t ReadPort8(std::uint16_t port) {
    std::uint8_t value;
    asm volatile("inb %w1, %b0" : "=a"(value) : "Nd"(port));
    return value;
}

inline std::uint32_t ReadPort32(std::uint16_t port) {
    std::uint32_t value;
    asm volatile("inl %w1, %0" : "=a"(value) : "Nd"(port));
    return value;
}

inline void WritePort32(std::uint16_t port, std::uint32_t value) {
    asm volatile("outl %0, %w1" : : "a"(value), "Nd"(port));
}

}  // namespace talvane

#endif
