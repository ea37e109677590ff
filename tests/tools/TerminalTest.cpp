// SPDX-License-Identifier: MIT
//
// The output on terminals of several widths, with colours and without; and the names of PCI
// functions from a list of the test's own.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/tools/RunTool.h"

namespace {

using testing::HasSubstr;
using testing::Not;

std::string Machine(const std::string& name) {
    return TALVANE_SOURCE "/machines/" + name;
}

// The letters of a text in ascending order, and so the same for every width.
std::string LettersOf(const std::string& text) {
    std::string letters;
    for (const char c : text)
        if (c != ' ' && c != '\n' && c != '-') letters += c;
    std::sort(letters.begin(), letters.end());
    return letters;
}

class TerminalTest : public testing::Test {
protected:
    TerminalTest() {
        unsetenv("NO_COLOR");
        setenv("TERM", "xterm", 1);
    }
};

TEST_F(TerminalTest, NoLineIsWiderThanTheTerminal) {
    constexpr unsigned short kWidths[] = {60, 80};
    for (const unsigned short columns : kWidths) {
        std::istringstream lines(RunToolOnTerminal(
            {"report", "--color", "never", "--machine", Machine("full-server")}, columns));
        for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), columns) << line;
    }
}

TEST_F(TerminalTest, ANarrowTableLosesNoText) {
    const std::vector<std::string> arguments{"ports", "--machine", Machine("full-server")};
    const std::string wide = RunTool(arguments).out;
    const std::string narrow = RunToolOnTerminal(arguments, 44);
    EXPECT_NE(narrow, wide);
    EXPECT_EQ(LettersOf(narrow), LettersOf(wide));
}

TEST_F(TerminalTest, VerdictsAreColoredOnATerminal) {
    const std::string shown = RunToolOnTerminal({"health", "--machine", Machine("full-server")});
    EXPECT_THAT(shown, HasSubstr("\x1B[33mWARNING\x1B[0m"));
    EXPECT_THAT(shown, HasSubstr("\x1B[32mOK\x1B[0m"));
    const std::string sensors = RunToolOnTerminal({"sensors", "--machine", Machine("full-server")});
    EXPECT_THAT(sensors, HasSubstr("\x1B[33mupper non-critical\x1B[0m"));
}

TEST_F(TerminalTest, NoColorAndTerminalsWithoutColorsAreObeyed) {
    const std::vector<std::string> arguments{"health", "--machine", Machine("full-server")};
    setenv("NO_COLOR", "1", 1);
    EXPECT_THAT(RunToolOnTerminal(arguments), Not(HasSubstr("\x1B")));
    setenv("NO_COLOR", "", 1);
    EXPECT_THAT(RunToolOnTerminal(arguments), HasSubstr("\x1B"));
    for (const char* const terminal : {"dumb", ""}) {
        setenv("TERM", terminal, 1);
        EXPECT_THAT(RunToolOnTerminal(arguments), Not(HasSubstr("\x1B"))) << terminal;
    }
}

TEST_F(TerminalTest, TheOptionDecidesAboutColorsAnywhere) {
    const std::vector<std::string> arguments{"health", "--machine", Machine("full-server")};
    const auto with = [&](const char* choice) {
        std::vector<std::string> line = arguments;
        line.insert(line.end(), {"--color", choice});
        return line;
    };
    EXPECT_THAT(RunToolOnTerminal(with("never")), Not(HasSubstr("\x1B")));
    EXPECT_THAT(RunTool(with("always")).out, HasSubstr("\x1B[33mWARNING\x1B[0m"));
    EXPECT_EQ(RunTool(with("auto")).out, RunTool(arguments).out);
    EXPECT_THAT(RunTool(arguments).out, Not(HasSubstr("\x1B")));
}

TEST(PciListTest, NamesAreShownWhereTheListHasThem) {
    const TemporaryFolder folder;
    const std::string list = folder.Path() / "pci.ids";
    WriteFile(list, "8086  A Maker\n\t248b  An IDE Controller\n");
    setenv("TALVANE_PCI_IDS", list.c_str(), 1);
    const std::vector<std::string> arguments{"pci", "--machine", Machine("full-server")};
    EXPECT_THAT(RunTool(arguments).out, HasSubstr("  00:1f.1  A Maker  An IDE Controller\n"));
    EXPECT_EQ(RunTool({"get", "pci.4.device.name", "--machine", Machine("full-server")}).out,
              "An IDE Controller\n");
    setenv("TALVANE_PCI_IDS", "/nowhere", 1);
    const std::string without = RunTool(arguments).out;
    EXPECT_THAT(without, HasSubstr("  00:1f.1  8086:248b  Mass storage controller  "));
    EXPECT_THAT(without, Not(HasSubstr("Vendor")));
}

}  // namespace
