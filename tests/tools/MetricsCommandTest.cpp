// SPDX-License-Identifier: MIT
//
// The command metrics, run from the command line, and its whole output on every machine, as
// recorded in golden/metrics. Run with TALVANE_RECORD=1 in the environment to record anew, then
// read the difference.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>
#include <sstream>

#include "tests/tools/MetricFormat.h"
#include "tests/tools/OneTemperature.h"
#include "tests/tools/RunTool.h"

namespace {

using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

std::string Bundled(const std::string& machine) {
    return TALVANE_SOURCE "/machines/" + machine;
}

// Every folder with a machine in it.
std::vector<std::filesystem::path> Machines() {
    std::vector<std::filesystem::path> machines;
    for (const char* folder : {TALVANE_SOURCE "/machines", TALVANE_GOLDEN})
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (std::filesystem::exists(entry.path() / "machine.txt"))
                machines.push_back(entry.path());
    std::sort(machines.begin(), machines.end());
    return machines;
}

// Times and the version differ from run to run.
std::string WithoutTimes(const std::string& text) {
    std::istringstream lines(text);
    std::string kept;
    for (std::string line; std::getline(lines, line);) {
        const bool isTime =
            line.starts_with("ipmi_scrape_") || line.starts_with("talvane_collection_");
        if (isTime) line = line.substr(0, line.find(' ')) + " TIME";
        if (line.starts_with("talvane_build_info{")) line = "talvane_build_info VERSION";
        kept += line + '\n';
    }
    return kept;
}

class MetricsOfMachineTest : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(MetricsOfMachineTest, AreWellFormedAndAsRecorded) {
    const ToolRun run = RunTool({"metrics", "--machine", GetParam()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(ParseMetrics(run.out).problems, IsEmpty());
    const std::string text = WithoutTimes(run.out);
    const auto recorded = std::filesystem::path(TALVANE_GOLDEN) / "metrics" /
                          (GetParam().filename().string() + ".prom");
    const char* record = std::getenv("TALVANE_RECORD");
    if (record != nullptr && std::strcmp(record, "1") == 0) WriteFile(recorded, text);
    EXPECT_EQ(text, ReadFile(recorded));
}

INSTANTIATE_TEST_SUITE_P(Tool, MetricsOfMachineTest, testing::ValuesIn(Machines()),
                         [](const auto& machine) {
                             std::string name = machine.param.filename();
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

// What follows `start` in each line that begins with it, up to `end`.
std::set<std::string> WordsAfter(const std::string& start, char end, const std::string& text) {
    std::set<std::string> words;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(start))
            words.insert(line.substr(start.size(), line.find(end, start.size()) - start.size()));
    return words;
}

TEST(MetricsCommandTest, TheDocumentationNamesEveryMetric) {
    const auto documented = WordsAfter("| `", '`', ReadFile(TALVANE_SOURCE "/docs/fleet.md"));
    std::string pages;
    for (const auto& page : std::filesystem::directory_iterator(TALVANE_GOLDEN "/metrics"))
        pages += ReadFile(page.path());
    const auto families = WordsAfter("# TYPE ", ' ', pages);
    EXPECT_GT(families.size(), 30u);
    for (const std::string& name : families) EXPECT_EQ(documented.count(name), 1u) << name;
}

TEST(MetricsCommandTest, AMissingSourceIsAMetricAndNoFailure) {
    const ToolRun run = MachineFolder("without /dev/mem EACCES\n").Run({"metrics", "--no-pci"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "open /dev/mem\n: Permission denied\n") << "the library's own words";
    const MetricFile file = ParseMetrics(run.out);
    EXPECT_EQ(file.Value("ipmi_up", {{"collector", "ipmi"}}), "0");
    EXPECT_EQ(file.Value("talvane_source_up", {{"source", "/dev/mem"}}), "0");
    EXPECT_EQ(file.Value("talvane_source_up", {{"source", "/dev/ipmi"}}), "0");
    EXPECT_EQ(file.Value("talvane_source_up", {{"source", "/proc/ide"}}), "0");
    EXPECT_EQ(file.Value("talvane_source_up", {{"source", "/proc/stat"}}), "1");
    EXPECT_EQ(file.Value("talvane_source_problem_info",
                         {{"source", "/dev/mem"},
                          {"reason", "cannot open /dev/mem: Permission denied (run as root)"}}),
              "1");
}

TEST(MetricsCommandTest, LeavesPciFunctionsOutOnRequest) {
    const ToolRun run = RunTool({"metrics", "--no-pci", "--machine", Bundled("full-server")});
    EXPECT_EQ(run.status, 0);
    std::istringstream whole(ReadFile(TALVANE_GOLDEN "/metrics/full-server.prom"));
    std::string without;
    for (std::string line; std::getline(whole, line);)
        if (line.find("talvane_pci") == line.npos && line.find("PCI ports") == line.npos)
            without += line + '\n';
    EXPECT_EQ(WithoutTimes(run.out), without);
}

TEST(MetricsCommandTest, RulesReplaceVerdicts) {
    const MachineFolder machine(kOneTemperature + std::string("reading 0x10 95\n"));
    EXPECT_EQ(
        ParseMetrics(machine.Run({"metrics", "--no-pci"}).out).Value("ipmi_temperature_state"),
        "2");
    WriteFile(machine.Path() / "rules", "sensor \"CPU*\" warning\n");
    const ToolRun run = machine.Run({"metrics", "--no-pci", "--rules", machine.Path() / "rules"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(ParseMetrics(run.out).Value("ipmi_temperature_state"), "1");
}

TEST(MetricsCommandTest, WritesTheSameIntoAFile) {
    const TemporaryFolder folder;
    const std::string file = folder.Path() / "talvane.prom";
    const ToolRun run =
        RunTool({"metrics", "--no-pci", "--output", file, "--machine", Bundled("failing-server")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(
        WithoutTimes(ReadFile(file)),
        WithoutTimes(RunTool({"metrics", "--no-pci", "--machine", Bundled("failing-server")}).out));
}

TEST(MetricsCommandTest, WrongRulesKeepTheFile) {
    const MachineFolder machine(kOneTemperature);
    WriteFile(machine.Path() / "rules", "spoons\n");
    WriteFile(machine.Path() / "talvane.prom", "old");
    const ToolRun run = machine.Run({"metrics", "--no-pci", "--rules", machine.Path() / "rules",
                                     "--output", machine.Path() / "talvane.prom"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, StartsWith("talvane: " + (machine.Path() / "rules").string() + ":1: "));
    EXPECT_EQ(ReadFile(machine.Path() / "talvane.prom"), "old");
}

TEST(MetricsCommandTest, AFileThatCannotBeWrittenIsAFailure) {
    const MachineFolder machine(kOneTemperature);
    const ToolRun run =
        machine.Run({"metrics", "--no-pci", "--output", "/nonexistent/talvane.prom"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err,
              "talvane: cannot write /nonexistent/talvane.prom: No such file or directory\n");
}

TEST(MetricsCommandTest, HasNoFormInJson) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"metrics", "--json"}, {"--json", "metrics"}}) {
        const ToolRun run = RunTool(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.err, StartsWith("talvane: metrics excludes --json\n"));
    }
}

}  // namespace
