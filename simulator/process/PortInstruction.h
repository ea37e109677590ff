// SPDX-License-Identifier: MIT
//
// The x86 instructions that move one value between the accumulator and an I/O port.
#ifndef TALVANE_SIMULATOR_PROCESS_PORTINSTRUCTION_H
#define TALVANE_SIMULATOR_PROCESS_PORTINSTRUCTION_H

#include <cstdint>
#include <optional>

namespace sim {

struct PortInstruction {
    bool output = false;               // out, not in
    unsigned width = 0;                // 1, 2 or 4 bytes: al, ax or eax
    std::optional<std::uint8_t> port;  // in the instruction itself; otherwise in dx
    unsigned length = 0;               // bytes of the instruction
};

// The instruction at `code` in 32-bit mode, or nothing when it is another one (the string forms
// ins and outs included). Reads no byte past the instruction's end.
std::optional<PortInstruction> DecodePortInstruction(const std::uint8_t* code);

// What `in` leaves in eax: a narrow value replaces only the low part.
std::uint32_t AccumulatorAfterIn(std::uint32_t eax, unsigned width, std::uint32_t value);

// What `out` writes of eax.
std::uint32_t ValueOfOut(std::uint32_t eax, unsigned width);

}  // namespace sim

#endif
