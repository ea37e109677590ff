// SPDX-License-Identifier: MIT
//
// Texts and quantities in JSON.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tools/base/JsonValue.h"

namespace tool {
namespace {

TEST(TextJsonTest, IsWithoutPaddingAndNullForNothing) {
    EXPECT_EQ(TextJson("  EXD-1   "), "EXD-1");
    EXPECT_EQ(TextJson("a  b"), "a  b");
    EXPECT_EQ(TextJson(""), nullptr);
    EXPECT_EQ(TextJson("   "), nullptr);
    EXPECT_EQ(TextJson("M\xFCller"), "M\xC3\xBCller");
}

TEST(QuantityJsonTest, TakesValueAndUnitFromTheLibrarysText) {
    EXPECT_EQ(QuantityJson("2400 MHZ").dump(), R"({"value":2400,"unit":"MHZ","text":"2400 MHZ"})");
    EXPECT_EQ(QuantityJson("48.50degree C").dump(),
              R"({"value":48.5,"unit":"degree C","text":"48.50degree C"})");
    EXPECT_EQ(QuantityJson("-0.50V")["value"], -0.5);
    EXPECT_EQ(QuantityJson("7").dump(), R"({"value":7,"unit":null,"text":"7"})");
}

TEST(QuantityJsonTest, HasNoValueWhereTheTextHasNoNumber) {
    for (const char* text : {"Unknown", "-", "1.2.3 V", "Bios Not Provide"}) {
        const Json json = QuantityJson(text);
        EXPECT_EQ(json["value"], nullptr) << text;
        EXPECT_EQ(json["unit"], nullptr) << text;
        EXPECT_EQ(json["text"], text);
    }
    EXPECT_EQ(QuantityJson(""), nullptr);
}

TEST(QuantityJsonTest, WritesWholeNumbersWithoutAPoint) {
    EXPECT_EQ(QuantityJson(5, "s", "5 s").dump(), R"({"value":5,"unit":"s","text":"5 s"})");
    EXPECT_EQ(QuantityJson(1.5, "s", "1.5 s")["value"], 1.5);
    EXPECT_EQ(QuantityJson(-4, "", "-4")["unit"], nullptr);
}

TEST(QuantityJsonTest, NumbersBeyondWhatADoubleHasAreNotExactOrNull) {
    EXPECT_EQ(QuantityJson("9007199254740992 B")["value"].type(), Json::value_t::number_integer);
    EXPECT_EQ(QuantityJson("9007199254740994 B")["value"].type(), Json::value_t::number_float);
    EXPECT_EQ(QuantityJson("10000000000000000000 B")["value"], 1e19);
    const Json huge = QuantityJson(std::string(400, '9') + " B");
    EXPECT_EQ(huge["value"], nullptr);
    EXPECT_EQ(huge["text"], std::string(400, '9') + " B");
}

}  // namespace
}  // namespace tool
