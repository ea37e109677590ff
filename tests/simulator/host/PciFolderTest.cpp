// SPDX-License-Identifier: MIT
//
// Names of PCI functions.

#include <gtest/gtest.h>

#include "simulator/host/PciFolder.h"

namespace {

TEST(PciFolderTest, NameIsBusDeviceAndFunctionInHexadecimal) {
    EXPECT_EQ(sim::PciLocationOf("0000:0a:1f.7"), (sim::PciLocation{10, 31, 7}));
    EXPECT_EQ(sim::PciLocationOf("0000:ff:00.0"), (sim::PciLocation{255, 0, 0}));
}

TEST(PciFolderTest, OtherDomainsAreNone) {
    EXPECT_FALSE(sim::PciLocationOf("0001:00:1f.2").has_value());
    EXPECT_FALSE(sim::PciLocationOf("10000:00:1f.2").has_value());
}

TEST(PciFolderTest, OtherNamesAreNone) {
    for (const char* const name :
         {"", "0000:00:1f", "0000:00:1f.8", "0000:00:20.0", "0000:0g:00.0", "0000:g0:00.0",
          "0000:00:00.g", "0000-00:00.0", "0000:00:00.00", "0000:00-00.0", "0000:00:00-0"})
        EXPECT_FALSE(sim::PciLocationOf(name).has_value()) << name;
}

}  // namespace
