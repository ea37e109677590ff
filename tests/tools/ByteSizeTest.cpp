// SPDX-License-Identifier: MIT
//
// Sizes for people and for machines.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tools/base/ByteSize.h"

namespace tool {
namespace {

TEST(SizeTextTest, IsInPowersOfAThousandWithOneDigit) {
    EXPECT_EQ(SizeText("40020664320"), "40.0 GB");
    EXPECT_EQ(SizeText("10737418240"), "10.7 GB");
    EXPECT_EQ(SizeText("512"), "512 B");
    EXPECT_EQ(SizeText("999"), "999 B");
    EXPECT_EQ(SizeText("1000"), "1.0 KB");
    EXPECT_EQ(SizeText("999949"), "999.9 KB");
    EXPECT_EQ(SizeText("999950"), "1.0 MB");
    EXPECT_EQ(SizeText("999999999999"), "1.0 TB");
}

TEST(SizeTextTest, ATextThatIsNotANumberStaysAsItIs) {
    EXPECT_EQ(SizeText(""), "");
    EXPECT_EQ(SizeText("12 GB"), "12 GB");
}

TEST(BytesTest, TheFirstOfTwelveCharactersCanComeAfterNine) {
    EXPECT_EQ(Bytes("999999999999"), 999999999999U);
    EXPECT_EQ(Bytes(":00000000000"), 1000000000000U);
    EXPECT_EQ(Bytes("D00398934016"), 2000398934016U) << "a drive of 2 TB";
    EXPECT_EQ(SizeText("D00398934016"), "2.0 TB");
    EXPECT_EQ(SizeText("/99999999999"), "25.6 TB") << "no size is larger";
}

TEST(BytesTest, ATextThatIsNotASizeHasNone) {
    EXPECT_EQ(Bytes(""), std::nullopt);
    EXPECT_EQ(Bytes(":0"), std::nullopt);
    EXPECT_EQ(Bytes("1:"), std::nullopt);
    EXPECT_EQ(Bytes("1000000000000"), std::nullopt) << "thirteen digits";
}

TEST(SizeJsonTest, HasTheTextAndTheNumber) {
    EXPECT_EQ(SizeJson("512").dump(), R"({"value":512,"unit":"B","text":"512"})");
    EXPECT_EQ(SizeJson("D00398934016")["value"], 2000398934016);
    EXPECT_EQ(SizeJson("1:").dump(), R"({"value":null,"unit":null,"text":"1:"})");
    EXPECT_EQ(SizeJson("").dump(), "null");
}

}  // namespace
}  // namespace tool
