// SPDX-License-Identifier: MIT
//
// The text exposition format: escapes, numbers, order, and what is never written.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "MetricFormat.h"
#include "tools/metrics/MetricPage.h"

namespace tool {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr MetricFamily kHeat = {"talvane_heat_celsius", "How hot it is."};
constexpr MetricFamily kPart = {"talvane_part_info", "A part."};

// The page with one label of this value.
std::string PageWith(const std::string& value) {
    MetricPage page;
    page.AddInfo(kPart, {{"name", value}});
    return page.Text();
}

std::string LabelOf(const std::string& value) {
    const MetricFile file = ParseMetrics(PageWith(value));
    EXPECT_THAT(file.problems, IsEmpty()) << PageWith(value);
    return file.samples.size() == 1 ? file.samples[0].labels.at("name") : "no sample";
}

TEST(MetricPageTest, WritesFamiliesByNameWithTheirHelpAndTypeOnce) {
    MetricPage page;
    page.AddInfo(kPart, {{"name", "B"}, {"slot", "2"}});
    page.Add(kHeat, {}, 21.5);
    page.AddInfo(kPart, {{"name", "A"}, {"slot", "1"}});
    EXPECT_EQ(page.Text(),
              "# HELP talvane_heat_celsius How hot it is.\n"
              "# TYPE talvane_heat_celsius gauge\n"
              "talvane_heat_celsius 21.5\n"
              "# HELP talvane_part_info A part.\n"
              "# TYPE talvane_part_info gauge\n"
              "talvane_part_info{name=\"B\",slot=\"2\"} 1\n"
              "talvane_part_info{name=\"A\",slot=\"1\"} 1\n");
    EXPECT_THAT(ParseMetrics(page.Text()).problems, IsEmpty());
}

TEST(MetricPageTest, EscapesBackslashQuoteAndLineFeed) {
    EXPECT_THAT(PageWith("a\\b\"c\nd"), HasSubstr("{name=\"a\\\\b\\\"c\\nd\"} 1\n"));
    EXPECT_EQ(LabelOf("a\\b\"c\nd"), "a\\b\"c\nd");
    EXPECT_EQ(LabelOf("\"} 1\ntalvane_heat_celsius 99"), "\"} 1\ntalvane_heat_celsius 99");
}

TEST(MetricPageTest, ShowsOtherControlCharactersInHexadecimal) {
    EXPECT_EQ(LabelOf("a\x1B[2Jb"), "a\\x1B[2Jb");
    EXPECT_EQ(LabelOf(std::string("a\0b", 3)), "a\\x00b");
    EXPECT_EQ(LabelOf("a\rb\x7F"), "a\\x0Db\\x7F");
    EXPECT_EQ(LabelOf("a\xC2\x9B"
                      "31mb"),
              "a\\x9B31mb");
    EXPECT_EQ(LabelOf("a\x9B"
                      "b"),
              "a\\x9Bb")
        << "Latin-1";
}

TEST(MetricPageTest, MakesBrokenUtf8Valid) {
    EXPECT_EQ(LabelOf("L\xFC"
                      "fter"),
              "L\xC3\xBC"
              "fter");
    EXPECT_EQ(LabelOf("\xE2\x82"), "\xC3\xA2\\x82");
    EXPECT_EQ(LabelOf("L\xC3\xBC"
                      "fter \xE6\xB8\xA9"),
              "L\xC3\xBC"
              "fter \xE6\xB8\xA9");
}

TEST(MetricPageTest, KeepsCharactersThatFollowTheControlsOfLatin1) {
    EXPECT_EQ(LabelOf("5 \xC2\xA3"), "5 \xC2\xA3") << "a pound sign";
    EXPECT_EQ(LabelOf("a\xC2\xA0"
                      "b"),
              "a\xC2\xA0"
              "b")
        << "the first character after them";
}

TEST(MetricPageTest, LeavesOutLabelsWithoutText) {
    MetricPage page;
    page.AddInfo(kPart, {{"name", "  "}, {"slot", " 1 "}, {"maker", ""}});
    page.AddInfo(kPart, {{"name", ""}});
    EXPECT_THAT(page.Text(), HasSubstr("gauge\ntalvane_part_info{slot=\"1\"} 1\n"));
    EXPECT_EQ(ParseMetrics(page.Text()).samples.size(), 1u);
}

TEST(MetricPageTest, NeverWritesASeriesTwice) {
    MetricPage page;
    page.Add(kHeat, {{"id", "1"}}, 20);
    page.Add(kHeat, {{"id", " 1"}}, 30);
    EXPECT_EQ(ParseMetrics(page.Text()).Value(kHeat.name), "20");
}

TEST(MetricPageTest, NeverWritesWhatIsNotANumber) {
    MetricPage page;
    page.Add(kHeat, {}, std::nan(""));
    page.Add(kHeat, {}, std::numeric_limits<double>::infinity());
    page.Add(kHeat, {}, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(page.Text(), "");
}

TEST(MetricPageTest, WritesWholeNumbersInFullAndOthersInTenDigits) {
    EXPECT_EQ(MetricNumber(0), "0");
    EXPECT_EQ(MetricNumber(-4), "-4");
    EXPECT_EQ(MetricNumber(99999999999.0), "99999999999");
    EXPECT_EQ(MetricNumber(1795342448.0), "1795342448");
    EXPECT_EQ(MetricNumber(12.06), "12.06");
    EXPECT_EQ(MetricNumber(0.1 + 0.2), "0.3");
    EXPECT_EQ(MetricNumber(1.0 / 3), "0.3333333333");
    EXPECT_EQ(MetricNumber(1e300), "1e+300");
    EXPECT_EQ(MetricNumber(1.5e-7), "1.5e-07");
}

// The checker that the tests of every machine rely on finds each fault.
TEST(MetricFormatTest, FindsEachFault) {
    const std::string head = "# HELP a_b Some help.\n# TYPE a_b gauge\n";
    EXPECT_THAT(ParseMetrics(head + "a_b{c=\"d\"} 1\n").problems, IsEmpty());
    for (const char* sample : {"",
                               "a_b 1",
                               "a_b NaN\n",
                               "a_b +Inf\n",
                               "a_b 1 1795342448\n",
                               "a_b 1\na_b 2\n",
                               "a_c 1\n",
                               "a_b{c=\"\\t\"} 1\n",
                               "a_b{c=\"d} 1\n",
                               "a_b{c=d} 1\n",
                               "a_b{c=\"d\"\"} 1\n",
                               "a_b{c=\"d\",c=\"e\"} 1\n",
                               "a_b{c=\"\"} 1\n",
                               "a_b{c=\"\xFF\"} 1\n",
                               "a_b{1=\"d\"} 1\n",
                               "a_b{c=\"d\"}1\n",
                               "a_b\n",
                               "a_b 1\n\n",
                               "a_b{c=\"\x1B\"} 1\n",
                               "a_b{c=\"d\"},e=\"f\"} 1\n",
                               "a_b 1\n# TYPE a_b gauge\n",
                               "a_b 1\n# HELP a_b Some help.\n# TYPE a_b gauge\na_b 2\n"})
        EXPECT_FALSE(ParseMetrics(head + sample).problems.empty()) << sample;
    EXPECT_FALSE(ParseMetrics("a_b 1\n").problems.empty());
    EXPECT_FALSE(ParseMetrics("# HELP a_b Some help.\na_b 1\n").problems.empty());
    EXPECT_FALSE(ParseMetrics("# HELP a_b\n# TYPE a_b gauge\na_b 1\n").problems.empty());
}

}  // namespace
}  // namespace tool
