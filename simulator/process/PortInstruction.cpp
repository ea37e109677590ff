// SPDX-License-Identifier: MIT
//
// The encodings of IN and OUT (Intel SDM, volume 2). Opcodes 0xE4 to 0xE7 carry the port in the
// next byte; 0xEC to 0xEF take it from dx. Bit 1 is set for output, bit 0 for a full-size operand,
// which has 16 bits after the prefix 0x66, else 32.

#include "simulator/process/PortInstruction.h"

namespace sim {
namespace {

constexpr std::uint8_t kOperandSizePrefix = 0x66;
constexpr std::uint8_t kKindMask = 0xFC;
constexpr std::uint8_t kImmediatePort = 0xE4;
constexpr std::uint8_t kPortInDx = 0xEC;
constexpr std::uint8_t kOutput = 0x02;
constexpr std::uint8_t kFullSize = 0x01;
constexpr unsigned kMaxLength = 15;  // the processor refuses longer instructions

constexpr std::uint32_t MaskOf(unsigned width) {
    return width == 4 ? 0xFFFFFFFF : (1u << (8 * width)) - 1;
}

}  // namespace

std::optional<PortInstruction> DecodePortInstruction(const std::uint8_t* code) {
    PortInstruction result;
    unsigned at = 0;
    while (at < kMaxLength && code[at] == kOperandSizePrefix) ++at;
    if (at == kMaxLength) return std::nullopt;
    const bool narrow = at > 0;

    const std::uint8_t opcode = code[at++];
    const std::uint8_t kind = opcode & kKindMask;
    if (kind != kImmediatePort && kind != kPortInDx) return std::nullopt;
    result.output = (opcode & kOutput) != 0;
    result.width = (opcode & kFullSize) == 0 ? 1 : narrow ? 2 : 4;
    if (kind == kImmediatePort) {
        if (at == kMaxLength) return std::nullopt;
        result.port = code[at++];
    }
    result.length = at;
    return result;
}

std::uint32_t AccumulatorAfterIn(std::uint32_t eax, unsigned width, std::uint32_t value) {
    const std::uint32_t mask = MaskOf(width);
    return (eax & ~mask) | (value & mask);
}

std::uint32_t ValueOfOut(std::uint32_t eax, unsigned width) {
    return eax & MaskOf(width);
}

}  // namespace sim
