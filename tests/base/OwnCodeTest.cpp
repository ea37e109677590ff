// SPDX-License-Identifier: MIT
//
// The bounds of the code that a program, or a library, is made of: here, of this test program.

#include <gtest/gtest.h>

#include <cstdint>

#include "base/OwnCode.h"

namespace {

std::uintptr_t AddressOf(int (*function)()) {
    return reinterpret_cast<std::uintptr_t>(function);
}

int OfThisProgram() {
    return 1;
}

TEST(OwnCodeTest, FunctionOfTheProgramIsItsOwn) {
    EXPECT_TRUE(talvane::IsCodeOfLibrary(AddressOf(OfThisProgram)));
}

TEST(OwnCodeTest, AddressesBelowAndAboveAreOthers) {
    EXPECT_FALSE(talvane::IsCodeOfLibrary(0));
    EXPECT_FALSE(talvane::IsCodeOfLibrary(UINTPTR_MAX));
}

}  // namespace
