// SPDX-License-Identifier: MIT
//
// A captured machine answers as it does at home: what the tool shows of the capture is, byte for
// byte, what it shows of the machine.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "tests/tools/MachineTree.h"
#include "tests/tools/RandomMachine.h"
#include "tests/tools/RunTool.h"

namespace {

std::vector<std::string> On(const std::filesystem::path& machine,
                            std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--machine", machine.string()});
    return arguments;
}

void ExpectSame(const std::filesystem::path& home, const std::filesystem::path& capture,
                const std::vector<std::string>& arguments) {
    const ToolRun there = RunTool(On(home, arguments));
    const ToolRun here = RunTool(On(capture, arguments));
    EXPECT_EQ(here.out, there.out) << arguments.front();
    EXPECT_EQ(here.err, there.err) << arguments.front();
    EXPECT_EQ(here.status, there.status) << arguments.front();
}

// A capture fails as the report does: it names the sources that cannot be read.
void ExpectReplayedAtHome(const std::filesystem::path& home) {
    const TemporaryFolder folder;
    const std::filesystem::path capture = folder.Path() / "capture.tar.gz";
    const ToolRun taken = RunTool(On(home, {"capture", capture.string()}));
    EXPECT_EQ(taken.out, "");
    EXPECT_NE(taken.status, 2) << taken.err;
    ExpectSame(home, capture, {"report"});
    ExpectSame(home, capture, {"report", "--json"});
}

class BundledCaptureTest : public testing::TestWithParam<const char*> {};

TEST_P(BundledCaptureTest, ReportIsTheSameAtHomeAndOfTheCapture) {
    ExpectReplayedAtHome(std::filesystem::path(TALVANE_SOURCE) / "machines" / GetParam());
}

INSTANTIATE_TEST_SUITE_P(Machines, BundledCaptureTest,
                         testing::Values("failing-server", "full-server", "legacy-dmi", "no-smbios",
                                         "qemu-4-sockets", "qemu-high-table", "qemu-legacy",
                                         "qemu-small", "tired-bmc"),
                         [](const auto& machine) {
                             std::string name = machine.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(BundledCaptureListTest, NamesEveryBundledMachine) {
    std::size_t count = 0;
    for (const auto& machine : std::filesystem::directory_iterator(TALVANE_SOURCE "/machines"))
        count += machine.is_directory() ? 1u : 0u;
    EXPECT_EQ(count, 9u);
}

// TALVANE_RANDOM_MACHINES=FROM-TO takes others.
class RandomCaptureTest : public testing::TestWithParam<unsigned> {};

TEST_P(RandomCaptureTest, ReportIsTheSameAtHomeAndOfTheCapture) {
    const std::string description = RandomMachine(GetParam());
    const MachineFolder home(description);
    ExpectReplayedAtHome(home.Path());
    if (HasFailure()) std::cout << description;
}

std::pair<unsigned, unsigned> Seeds() {
    const char* const given = std::getenv("TALVANE_RANDOM_MACHINES");
    unsigned from = 1;
    unsigned to = 8;
    if (given != nullptr) (void)std::sscanf(given, "%u-%u", &from, &to);
    return {from, to};
}

INSTANTIATE_TEST_SUITE_P(Machines, RandomCaptureTest,
                         testing::Range(Seeds().first, Seeds().second + 1));

// The lines of a page of metrics that do not say when or how long.
std::string WithoutMeasuredTimes(const std::string& page) {
    std::istringstream lines(page);
    std::string kept;
    for (std::string line; std::getline(lines, line);)
        if (line.find("_seconds") == std::string::npos &&
            line.find("_timestamp") == std::string::npos)
            kept += line + '\n';
    return kept;
}

TEST(CommandsOnACaptureTest, AnswerAsAtHome) {
    const std::filesystem::path home = TALVANE_SOURCE "/machines/full-server";
    const TemporaryFolder folder;
    const std::filesystem::path capture = folder.Path() / "capture.tar.gz";
    ASSERT_EQ(RunTool(On(home, {"capture", capture.string()})).status, 0);
    ExpectSame(home, capture, {"health"});
    ExpectSame(home, capture, {"sensors", "--library"});
    ExpectSame(home, capture, {"drives"});
    ExpectSame(home, capture, {"get", "board.serial-number"});
    ExpectSame(home, capture, {"load", "--interval", "7"});
    EXPECT_EQ(WithoutMeasuredTimes(RunTool(On(capture, {"metrics"})).out),
              WithoutMeasuredTimes(RunTool(On(home, {"metrics"})).out));
}

TEST(CommandsOnACaptureTest, CaptureOfACaptureHoldsTheSameFiles) {
    const std::filesystem::path home = TALVANE_SOURCE "/machines/tired-bmc";
    const TemporaryFolder folder;
    const std::string first = folder.Path() / "first.tar.gz";
    const std::string second = folder.Path() / "second.tar.gz";
    (void)RunTool(On(home, {"capture", first}));
    (void)RunTool(On(first, {"capture", second}));
    const std::string compare =
        "cd " + folder.Path().string() +
        " && for f in first second; do mkdir $f; tar xzf $f.tar.gz -C $f; "
        "sed -i '/^# Captured/d' $f/machine/machine.txt; done; diff -r first second";
    EXPECT_EQ(std::system(compare.c_str()), 0);
}

// A running system keeps its ways, too: through which files each area was read.
TEST(HostCaptureTest, AnswersAsTheRunningSystem) {
    const HostTree tree;
    WriteTree(TALVANE_SOURCE "/machines/full-server", tree);
    const std::vector<std::string> host = {"--host", "--root", tree.root.string()};
    const TemporaryFolder folder;
    const std::filesystem::path capture = folder.Path() / "capture.tar.gz";
    std::vector<std::string> take = {"capture", capture.string()};
    take.insert(take.end(), host.begin(), host.end());
    EXPECT_EQ(RunTool(take).status, 1) << "there is no BMC";
    for (const char* const command : {"board", "bmc", "pci", "partitions"}) {
        std::vector<std::string> ask = {command, "--json"};
        const ToolRun here = RunTool(On(capture, ask));
        ask.insert(ask.end(), host.begin(), host.end());
        const ToolRun there = RunTool(ask);
        EXPECT_EQ(here.out, there.out) << command;
        EXPECT_EQ(here.err, there.err) << command;
        EXPECT_EQ(here.status, there.status) << command;
    }
}

}  // namespace
