// SPDX-License-Identifier: MIT
//
// The x86 instructions that move one value between the accumulator and an I/O port.
#ifndef TALVANE_SIMULATOR_PROCESS_PORTINSTRUCTION_H
#define TALVANE_SIMULATOR_PROCESS_PORTINSTRUCTION_H

#include <cstdint>
#include <optional>

namespace sim {

struct PortInstruction {
    bool output = false;               // true for out, false for in
    unsigned width = 0;                // 1, 2 or 4 bytes: al, ax or eax
    std::optional<std::uint8_t> port;  // the port in the instruction; none: it is in dx
    unsigned length = 0;               // bytes of the instruction
};

// Decodes the instruction at `code` in 32-bit mode. Nothing for other instructions, which include
// the string forms ins and outs. Reads no byte past the instruction's end.
std::optional<PortInstruction> DecodePortInstruction(const std::uint8_t* code);

// The value of eax after `in`: a narrow value replaces only the low part.
std::uint32_t AccumulatorAfterIn(std::uint32_t eax, unsigned width, std::uint32_t value);

// The part of eax that `out` writes.
std::uint32_t ValueOfOut(std::uint32_t eax, unsigned width);

}  // namespace sim

#endif
