// SPDX-License-Identifier: MIT
//
// The whole output on the machines in golden/, as recorded beside each: report.txt and report.json.
// Run with TALVANE_RECORD=1 in the environment to record anew, then read the difference.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "tools/RunTool.h"

namespace {

using testing::Each;

constexpr const char* kCommands[] = {"system", "board", "cpu",      "memory",      "ports",
                                     "power",  "fans",  "voltages", "temperatures"};

std::string Recorded(const std::filesystem::path& file, const std::string& actual) {
    const char* record = std::getenv("TALVANE_RECORD");
    if (record != nullptr && std::strcmp(record, "1") == 0) WriteFile(file, actual);
    return ReadFile(file);
}

class GoldenMachine : public testing::TestWithParam<const char*> {
protected:
    std::filesystem::path folder() const {
        return std::filesystem::path(TALVANE_GOLDEN) / GetParam();
    }

    ToolRun Run(std::vector<std::string> arguments) const {
        arguments.push_back("--machine");
        arguments.push_back(folder());
        return RunTool(arguments);
    }
};

TEST_P(GoldenMachine, ReportIsAsRecorded) {
    const ToolRun run = Run({"report"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, Recorded(folder() / "report.txt", run.out));
}

TEST_P(GoldenMachine, ReportInJsonIsAsRecorded) {
    const ToolRun run = Run({"report", "--json"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, Recorded(folder() / "report.json", run.out));
}

TEST_P(GoldenMachine, ReportIsWhatTheCommandsSayOneByOne) {
    std::string together;
    nlohmann::json members = {{"errors", nlohmann::json::array()}};
    for (const char* command : kCommands) {
        together += (together.empty() ? "" : "\n") + Run({command}).out;
        members.update(nlohmann::json::parse(Run({command, "--json"}).out));
    }
    EXPECT_EQ(together, Run({"report"}).out);
    EXPECT_EQ(members, nlohmann::json::parse(Run({"report", "--json"}).out));
}

TEST_P(GoldenMachine, OutputHasNoTrailingBlanksAndNoControlCharacters) {
    const std::string text = Run({"report"}).out;
    EXPECT_EQ(text.find(" \n"), std::string::npos);
    EXPECT_EQ(text.find("\n\n\n"), std::string::npos);
    const auto isSafe = [](char byte) {
        return byte == '\n' || static_cast<unsigned char>(byte) >= 0x20;
    };
    EXPECT_THAT(text, Each(testing::Truly(isSafe)));
    EXPECT_THAT(Run({"report", "--json"}).out, Each(testing::Truly(isSafe)));
}

INSTANTIATE_TEST_SUITE_P(Tool, GoldenMachine,
                         testing::Values("server", "oddities", "bare", "crowded"),
                         [](const auto& machine) { return std::string(machine.param); });

}  // namespace
