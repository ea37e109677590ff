// SPDX-License-Identifier: MIT
//
// Decoding of IN and OUT, byte by byte.

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <vector>

#include "simulator/process/PortInstruction.h"

namespace {

struct Encoding {
    std::vector<std::uint8_t> code;
    bool output;
    unsigned width;
    std::optional<std::uint8_t> port;
};

TEST(PortInstructionTest, EveryFormIsDecoded) {
    const std::vector<Encoding> forms = {
        {{0xE4, 0x42}, false, 1, 0x42},
        {{0xE5, 0x42}, false, 4, 0x42},
        {{0x66, 0xE5, 0x42}, false, 2, 0x42},
        {{0xEC}, false, 1, {}},
        {{0xED}, false, 4, {}},
        {{0x66, 0xED}, false, 2, {}},
        {{0xE6, 0x42}, true, 1, 0x42},
        {{0xE7, 0x42}, true, 4, 0x42},
        {{0x66, 0xE7, 0x42}, true, 2, 0x42},
        {{0xEE}, true, 1, {}},
        {{0xEF}, true, 4, {}},
        {{0x66, 0xEF}, true, 2, {}},
        {{0x66, 0xEC}, false, 1, {}},
        {{0x66, 0x66, 0xED}, false, 2, {}},
    };
    for (const Encoding& form : forms) {
        const auto decoded = sim::DecodePortInstruction(form.code.data());
        ASSERT_TRUE(decoded.has_value());
        EXPECT_EQ(decoded->output, form.output);
        EXPECT_EQ(decoded->width, form.width);
        EXPECT_EQ(decoded->port, form.port);
        EXPECT_EQ(decoded->length, form.code.size());
    }
}

TEST(PortInstructionTest, OtherOpcodesAreNotDecoded) {
    for (unsigned opcode = 0; opcode < 256; ++opcode) {
        if (opcode == 0x66) continue;  // a prefix
        const bool port = (opcode >= 0xE4 && opcode <= 0xE7) || (opcode >= 0xEC && opcode <= 0xEF);
        const std::array<std::uint8_t, 2> code{static_cast<std::uint8_t>(opcode), 0};
        EXPECT_EQ(sim::DecodePortInstruction(code.data()).has_value(), port) << opcode;
    }
}

TEST(PortInstructionTest, InstructionLongerThanFifteenBytesIsNotDecoded) {
    std::array<std::uint8_t, 15> prefixes{};
    prefixes.fill(0x66);
    EXPECT_FALSE(sim::DecodePortInstruction(prefixes.data()).has_value());
    prefixes[14] = 0xED;
    EXPECT_EQ(sim::DecodePortInstruction(prefixes.data())->length, 15u);
    prefixes[14] = 0xE5;  // its port would be the sixteenth byte
    EXPECT_FALSE(sim::DecodePortInstruction(prefixes.data()).has_value());
}

TEST(PortInstructionTest, NarrowValueChangesOnlyTheLowPartOfTheAccumulator) {
    EXPECT_EQ(sim::AccumulatorAfterIn(0x11223344, 1, 0xAABBCCDD), 0x112233DDu);
    EXPECT_EQ(sim::AccumulatorAfterIn(0x11223344, 2, 0xAABBCCDD), 0x1122CCDDu);
    EXPECT_EQ(sim::AccumulatorAfterIn(0x11223344, 4, 0xAABBCCDD), 0xAABBCCDDu);
    EXPECT_EQ(sim::ValueOfOut(0x11223344, 1), 0x44u);
    EXPECT_EQ(sim::ValueOfOut(0x11223344, 2), 0x3344u);
    EXPECT_EQ(sim::ValueOfOut(0x11223344, 4), 0x11223344u);
}

}  // namespace
