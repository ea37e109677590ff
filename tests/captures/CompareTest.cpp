// SPDX-License-Identifier: MIT
//
// Each captured machine: every field of every SMBIOS command against dmidecode.

#include <gtest/gtest.h>

#include "Capture.h"
#include "TestName.h"

namespace captures {
namespace {

constexpr char kAbsent[] = "no captures: set TALVANE_SHARED_DATA to the folder that holds them";

class CapturedMachineTest : public testing::TestWithParam<Capture> {};

TEST_P(CapturedMachineTest, AnswersWhatDmidecodePrints) {
    const Comparison result = Examine(GetParam());
    EXPECT_GT(result.fields, 0u);
    for (const std::string& difference : result.unexplained) ADD_FAILURE() << difference;
}

std::string NameOf(const testing::TestParamInfo<Capture>& capture) {
    return TestName(capture.param.name);
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CapturedMachine);
INSTANTIATE_TEST_SUITE_P(Smbios, CapturedMachineTest, testing::ValuesIn(AllCaptures()), NameOf);

TEST(CapturedMachinesTest, UseEveryRule) {
    const std::vector<Capture> all = AllCaptures();
    if (all.empty()) GTEST_SKIP() << kAbsent;
    std::map<Rule, unsigned> used;
    for (const Capture& capture : all)
        for (const auto& [rule, count] : Examine(capture).byRule) used[rule] += count;
    for (const RuleText& rule : AllRules())
        EXPECT_TRUE(used.contains(rule.rule)) << rule.name << " explains nothing any more";
}

}  // namespace
}  // namespace captures
