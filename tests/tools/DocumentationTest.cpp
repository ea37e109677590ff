// SPDX-License-Identifier: MIT
//
// The outputs in the documentation are those of the tool. In a block that begins with ```console,
// a line "$ talvane ARGUMENTS" is run on the bundled machines, and what follows it, up to the next
// such line or the block's end, must be what it prints. The output may go through filters: "$
// talvane ARGUMENTS | FILTER". With TALVANE_RECORD=1 in the environment the outputs are written
// into the files.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <sstream>

#include "tests/tools/RunTool.h"

namespace {

constexpr const char* kCommandStart = "$ talvane ";

// The words of a command line, with the bundled machines at their place.
std::vector<std::string> ArgumentsOf(const std::string& line) {
    constexpr const char* kMachines = "machines/";
    std::istringstream words(line.substr(std::strlen(kCommandStart)));
    std::vector<std::string> arguments;
    for (std::string word; words >> word;)
        arguments.push_back(word.starts_with(kMachines) ? TALVANE_SOURCE "/" + word : word);
    return arguments;
}

// What a command line prints, its filters included.
std::string OutputOf(const std::string& line) {
    const std::size_t bar = line.find(" | ");
    const std::string output = RunTool(ArgumentsOf(line.substr(0, bar))).out;
    if (bar == std::string::npos) return output;
    const TemporaryFolder folder;
    WriteFile(folder.Path() / "in", output);
    const std::string filtered = "cd " + folder.Path().string() + " && cat in" + line.substr(bar);
    EXPECT_EQ(std::system((filtered + " > out").c_str()), 0) << line;
    return ReadFile(folder.Path() / "out");
}

// The file's text with the outputs that the tool gives now.
std::string WithOutputsOfNow(const std::string& text, int& commands) {
    std::istringstream lines(text);
    std::string renewed;
    bool isConsole = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```")) isConsole = line == "```console";
        const bool isCommand = isConsole && line.starts_with(kCommandStart);
        const bool isOutput = isConsole && !line.starts_with("$ ") && !line.starts_with("```");
        if (!isOutput) renewed += line + '\n';
        if (!isCommand) continue;
        renewed += OutputOf(line);
        ++commands;
    }
    return renewed;
}

class DocumentationTest : public testing::TestWithParam<const char*> {};

TEST_P(DocumentationTest, ShowsTheOutputsOfTheTool) {
    const std::string file = std::string(TALVANE_SOURCE "/docs/") + GetParam();
    const std::string text = ReadFile(file);
    int commands = 0;
    const std::string renewed = WithOutputsOfNow(text, commands);
    EXPECT_GT(commands, 0);
    const char* record = std::getenv("TALVANE_RECORD");
    if (record != nullptr && std::strcmp(record, "1") == 0) {
        WriteFile(file, renewed);
        return;
    }
    EXPECT_EQ(text, renewed);
}

INSTANTIATE_TEST_SUITE_P(Tool, DocumentationTest,
                         testing::Values("fleet.md", "health.md", "json.md"), [](const auto& file) {
                             const std::string name = file.param;
                             return name.substr(0, name.find('.'));
                         });

}  // namespace
