// SPDX-License-Identifier: MIT
//
// The comparison itself: that it can tell.

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "Comparison.h"

namespace captures {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

TEST(ComparisonTest, CountsAnAnswerWithDmidecodesMeaningAsEqual) {
    ExpectedFields expected;
    expected.Add("system.version", "A");
    const Comparison result = Compare(expected, {{"system.version", "A"}});
    EXPECT_EQ(result.equal, 1u);
    EXPECT_EQ(result.Ruled(), 0u);
    EXPECT_THAT(result.unexplained, IsEmpty());
}

TEST(ComparisonTest, CountsARuledAnswerUnderItsRule) {
    ExpectedFields expected;
    expected.Add("system.version", "ABCD").CutTo(3);
    const Comparison result = Compare(expected, {{"system.version", "AB"}});
    EXPECT_EQ(result.equal, 0u);
    EXPECT_EQ(result.Ruled(), 1u);
    EXPECT_THAT(result.byRule, ElementsAre(Pair(Rule::kCutToField, 1u)));
    EXPECT_THAT(result.unexplained, IsEmpty());
}

TEST(ComparisonTest, LeavesAnAnswerUnexplainedThatIgnoresItsRule) {
    ExpectedFields expected;
    expected.Add("system.version", "ABCD").CutTo(3);
    EXPECT_THAT(Compare(expected, {{"system.version", "ABCD"}}).unexplained,
                ElementsAre(HasSubstr("must be \"AB\"")));
}

TEST(ComparisonTest, LeavesAMissingAnswerUnexplained) {
    ExpectedFields expected;
    expected.Add("system.version", "A");
    EXPECT_THAT(Compare(expected, {}).unexplained, ElementsAre(HasSubstr("system.version")));
}

TEST(ComparisonTest, LeavesAnAnswerUnexplainedThatNothingSaysAnythingAbout) {
    EXPECT_THAT(Compare({}, {{"board.AssetTag", "x"}}).unexplained,
                ElementsAre(HasSubstr("board.AssetTag")));
}

TEST(ComparisonTest, AcceptsUnwrittenFieldsWithoutAnExpectation) {
    EXPECT_THAT(Compare({}, {{"board.AssetTag", ""}, {"cpu[1].IsUHT", "0"}}).unexplained,
                IsEmpty());
}

TEST(ComparisonTest, CountsAnAnswerThatIsLeftOpenUnderItsRule) {
    ExpectedFields expected;
    expected.OpenBy(Rule::kWalksPastDamage);
    const Comparison result = Compare(expected, {{"board.AssetTag", "x"}});
    EXPECT_THAT(result.byRule, ElementsAre(Pair(Rule::kWalksPastDamage, 1u)));
    EXPECT_THAT(result.unexplained, IsEmpty());
}

TEST(ExpectedFieldTest, DoesNotCountARuleThatChangesNothing) {
    ExpectedFields expected;
    const ExpectedField& field = expected.Add("system.version", "AB").CutTo(3);
    EXPECT_THAT(field.Rules(), IsEmpty());
}

TEST(RulesTest, EveryRuleHasANameOfItsOwn) {
    std::set<std::string_view> names;
    for (const RuleText& rule : AllRules()) {
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
        EXPECT_EQ(&TextOf(rule.rule), &rule) << rule.name;
    }
}

TEST(ComparisonTest, HasEveryRuleInTheDocumentation) {
    std::ifstream file(TALVANE_BEHAVIOUR);
    const std::string documentation((std::istreambuf_iterator<char>(file)), {});
    for (const RuleText& rule : AllRules())
        EXPECT_THAT(documentation, HasSubstr("`" + std::string(rule.name) + "`"));
}

}  // namespace
}  // namespace captures
