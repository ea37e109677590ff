// SPDX-License-Identifier: MIT
//
// What is written for commands that answer and for commands whose source cannot be read.

#include <gtest/gtest.h>

#include <sstream>

#include "tools/Report.h"

namespace tool {
namespace {

int reasonsAsked = 0;

std::string WhyDrawer() {
    ++reasonsAsked;
    return "the drawer is locked";
}

std::string WhyShelf() {
    return "the shelf is \xFC"
           "ber";
}

const Source kDrawer{"drawer", WhyDrawer, "kitchen"};
const Source kShelf{"shelf", WhyShelf, "cellar"};

std::optional<Answer> Spoons(const Settings&) {
    return Answer{"Spoons\n", {{"quantity", 3}}};
}
std::optional<Answer> Forks(const Settings&) {
    return Answer{"Forks\n", {{"quantity", 4}}};
}
std::optional<Answer> SpoonsOfTheDrawerOnly(const Settings&) {
    return Answer{"Spoons\n", {{"quantity", 1}}, {&kShelf}};
}
std::optional<Answer> Repeated(const Settings& settings) {
    return Answer{std::to_string(settings.loadInterval) + "\n", settings.loadInterval};
}
std::optional<Answer> Unread(const Settings&) {
    return std::nullopt;
}

struct Written {
    bool allRead;
    std::string out;
    std::string err;
};

Written Write(std::span<const Command> commands, Format format) {
    std::ostringstream out;
    std::ostringstream err;
    const bool allRead = Report(commands, {.loadInterval = 7}, format, out, err);
    return {allRead, out.str(), err.str()};
}

TEST(ReportTest, WritesEachAnswerInOrder) {
    const Command commands[] = {{"spoons", "", &kDrawer, Spoons}, {"forks", "", &kDrawer, Forks}};
    const Written text = Write(commands, Format::kText);
    EXPECT_TRUE(text.allRead);
    EXPECT_EQ(text.out, "Spoons\n\nForks\n");
    EXPECT_EQ(text.err, "");
    EXPECT_EQ(Write(commands, Format::kJson).out,
              "{\n"
              "  \"schema\": 1,\n"
              "  \"spoons\": {\n"
              "    \"quantity\": 3\n"
              "  },\n"
              "  \"forks\": {\n"
              "    \"quantity\": 4\n"
              "  },\n"
              "  \"errors\": []\n"
              "}\n");
}

TEST(ReportTest, NamesWhatCouldNotBeReadAndWhyOncePerSource) {
    const Command commands[] = {{"knives", "", &kDrawer, Unread},
                                {"forks", "", &kDrawer, Forks},
                                {"plates", "", &kShelf, Unread},
                                {"spoons", "", &kDrawer, Unread}};
    reasonsAsked = 0;
    const Written text = Write(commands, Format::kText);
    EXPECT_FALSE(text.allRead);
    EXPECT_EQ(text.out,
              "Forks\n"
              "\n"
              "Not read\n"
              "--------\n"
              "  drawer  knives, spoons\n"
              "  shelf   plates\n");
    EXPECT_EQ(text.err,
              "talvane: the drawer is locked\n"
              "talvane: the shelf is \xFC"
              "ber\n");
    EXPECT_EQ(reasonsAsked, 1);
}

TEST(ReportTest, GivesNullInJsonForWhatCouldNotBeRead) {
    const Command commands[] = {{"knives", "", &kDrawer, Unread}, {"plates", "", &kShelf, Unread}};
    const Written json = Write(commands, Format::kJson);
    EXPECT_FALSE(json.allRead);
    EXPECT_EQ(Json::parse(json.out), Json::parse(R"({
        "schema": 1,
        "knives": null,
        "plates": null,
        "errors": [
            {"source": "drawer", "message": "the drawer is locked"},
            {"source": "shelf", "message": "the shelf is über"}
        ]
    })"));
    EXPECT_EQ(json.err,
              "talvane: the drawer is locked\n"
              "talvane: the shelf is \xFC"
              "ber\n");
}

TEST(ReportTest, ShowsAnAnswerOfWhichAPartIsMissingAndNamesThePart) {
    const Command commands[] = {{"spoons", "", &kDrawer, SpoonsOfTheDrawerOnly},
                                {"plates", "", &kShelf, Unread}};
    const Written text = Write(commands, Format::kText);
    EXPECT_FALSE(text.allRead);
    EXPECT_EQ(text.out,
              "Spoons\n"
              "\n"
              "Not read\n"
              "--------\n"
              "  shelf  spoons, plates\n");
    EXPECT_EQ(Json::parse(Write(commands, Format::kJson).out), Json::parse(R"({
        "schema": 1,
        "spoons": {"quantity": 1},
        "plates": null,
        "errors": [{"source": "shelf", "message": "the shelf is über"}]
    })"));
}

TEST(ReportTest, HandsItsSettingsToTheCommands) {
    const Command commands[] = {{"repeated", "", &kDrawer, Repeated}};
    EXPECT_EQ(Write(commands, Format::kText).out, "7\n");
}

TEST(ReportTest, AreaThatCannotBeReadIsNotAskedAndNamedByItsWay) {
    const Command commands[] = {{"spoons", "", &kDrawer, Spoons}, {"jars", "", &kShelf, Spoons}};
    const Settings settings{.ways = {{"kitchen", false, "/sys/kitchen", "", "the kitchen is shut"},
                                     {"cellar", true, "/dev/cellar", "half of it", ""}}};
    std::ostringstream out;
    std::ostringstream err;
    reasonsAsked = 0;
    EXPECT_FALSE(Report(commands, settings, Format::kText, out, err));
    EXPECT_EQ(out.str(),
              "Spoons\n"
              "\n"
              "Not read\n"
              "--------\n"
              "  /sys/kitchen  spoons\n"
              "\n"
              "Read from\n"
              "---------\n"
              "  kitchen  nothing, /sys/kitchen cannot be read\n"
              "  cellar   /dev/cellar, directly (half of it)\n");
    EXPECT_EQ(err.str(), "talvane: the kitchen is shut\n");
    EXPECT_EQ(reasonsAsked, 0);
}

TEST(ReportTest, AsksForNoReasonWhenAllIsRead) {
    const Command commands[] = {{"forks", "", &kDrawer, Forks}};
    reasonsAsked = 0;
    Write(commands, Format::kText);
    EXPECT_EQ(reasonsAsked, 0);
}

}  // namespace
}  // namespace tool
