// SPDX-License-Identifier: MIT
//
// How each area is read, as text and back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/host/Ways.h"

namespace {

TEST(WaysTest, WaysComeBackAsTheyWere) {
    const std::vector<sim::AreaWay> ways = {
        {"smbios", true, "/dev/mem", "", ""},
        {"drives", false, "/sys/block", "hda is sda", "", "/dev/sda", "cannot open /dev/sda"},
        {"bmc", false, "/dev/ipmi0", "", "cannot open /dev/ipmi0"}};
    const auto decoded = sim::DecodeWays(sim::EncodeWays(ways));
    ASSERT_EQ(decoded.size(), ways.size());
    for (std::size_t i = 0; i < ways.size(); ++i) {
        EXPECT_EQ(decoded[i].area, ways[i].area);
        EXPECT_EQ(decoded[i].isDirect, ways[i].isDirect);
        EXPECT_EQ(decoded[i].from, ways[i].from);
        EXPECT_EQ(decoded[i].note, ways[i].note);
        EXPECT_EQ(decoded[i].problem, ways[i].problem);
        EXPECT_EQ(decoded[i].unopened, ways[i].unopened);
        EXPECT_EQ(decoded[i].whyUnopened, ways[i].whyUnopened);
    }
}

TEST(WaysTest, SeparatorsInTextsBecomeBlanks) {
    const auto decoded = sim::DecodeWays(sim::EncodeWays({{"pci", false, "a\tb\nc", "", ""}}));
    ASSERT_EQ(decoded.size(), 1u);
    EXPECT_EQ(decoded[0].from, "a b c");
}

TEST(WaysTest, LinesThatAreNotWholeAreSkipped) {
    EXPECT_TRUE(sim::DecodeWays("").empty());
    EXPECT_TRUE(sim::DecodeWays("pci\thost\tfolder\n\n").empty());
    EXPECT_EQ(sim::DecodeWays("pci\nload\tdirect\t/proc/stat\t\t\t\t").size(), 1u);
}

}  // namespace
