// SPDX-License-Identifier: MIT
//
// The whole output on the machines in golden/, as recorded beside each: report.txt, report.json
// and, for standard error, report.err. Run with TALVANE_RECORD=1 in the environment to record anew,
// then read the difference.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/tools/RunTool.h"

namespace {

using testing::Each;

constexpr const char* kCommands[] = {
    "system", "board",    "cpu",          "memory",     "ports",      "power",
    "fans",   "voltages", "temperatures", "sensors",    "thresholds", "watchdog",
    "bmc",    "pci",      "drives",       "partitions", "load"};

std::string Recorded(const std::filesystem::path& file, const std::string& actual) {
    const char* record = std::getenv("TALVANE_RECORD");
    if (record != nullptr && std::strcmp(record, "1") == 0) WriteFile(file, actual);
    return ReadFile(file);
}

class GoldenMachineTest : public testing::TestWithParam<const char*> {
protected:
    std::filesystem::path Folder() const {
        return std::filesystem::path(TALVANE_GOLDEN) / GetParam();
    }

    // Diagnostics are about sources that the machine does not have.
    void ExpectRecordedErrors(const ToolRun& run) const {
        EXPECT_EQ(run.err, Recorded(Folder() / "report.err", run.err));
        EXPECT_EQ(run.status, run.err.empty() ? 0 : 1);
    }

    ToolRun Run(std::vector<std::string> arguments) const {
        arguments.push_back("--machine");
        arguments.push_back(Folder());
        return RunTool(arguments);
    }
};

TEST_P(GoldenMachineTest, ReportIsAsRecorded) {
    const ToolRun run = Run({"report"});
    ExpectRecordedErrors(run);
    EXPECT_EQ(run.out, Recorded(Folder() / "report.txt", run.out));
}

TEST_P(GoldenMachineTest, ReportInJsonIsAsRecorded) {
    const ToolRun run = Run({"report", "--json"});
    ExpectRecordedErrors(run);
    EXPECT_EQ(run.out, Recorded(Folder() / "report.json", run.out));
}

TEST_P(GoldenMachineTest, OutputHasNoTrailingBlanksAndNoControlCharacters) {
    const std::string text = ReadFile(Folder() / "report.txt");
    EXPECT_EQ(text.find(" \n"), std::string::npos);
    EXPECT_EQ(text.find("\n\n\n"), std::string::npos);
    const auto isSafe = [](char byte) {
        return byte == '\n' || static_cast<unsigned char>(byte) >= 0x20;
    };
    EXPECT_THAT(text, Each(testing::Truly(isSafe)));
    EXPECT_THAT(ReadFile(Folder() / "report.json"), Each(testing::Truly(isSafe)));
}

// All that a machine can have, and nothing of it.
class GoldenCommandsTest : public GoldenMachineTest {};

TEST_P(GoldenCommandsTest, EachCommandPrintsItsPartOfTheReport) {
    std::string together;
    nlohmann::json members;
    for (const char* command : kCommands) {
        const ToolRun run = Run({command});
        if (run.status == 0) together += (together.empty() ? "" : "\n") + run.out;
        nlohmann::json json = nlohmann::json::parse(Run({command, "--json"}).out);
        json.erase("errors");
        EXPECT_EQ(json.at("schema"), 1);
        members.update(json);
    }
    const std::string report = ReadFile(Folder() / "report.txt");
    EXPECT_EQ(together, report.substr(0, together.size()));
    EXPECT_THAT(report.substr(together.size()),
                testing::AnyOf(testing::IsEmpty(), testing::StartsWith("\nNot read\n")));
    nlohmann::json whole = nlohmann::json::parse(ReadFile(Folder() / "report.json"));
    whole.erase("errors");
    EXPECT_EQ(members, whole);
}

INSTANTIATE_TEST_SUITE_P(Tool, GoldenCommandsTest, testing::Values("server", "bare"),
                         [](const auto& machine) { return std::string(machine.param); });

INSTANTIATE_TEST_SUITE_P(Tool, GoldenMachineTest,
                         testing::Values("server", "oddities", "bare", "crowded"),
                         [](const auto& machine) { return std::string(machine.param); });

}  // namespace
