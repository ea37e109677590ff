// SPDX-License-Identifier: MIT
//
// talvane report --html: the file, what stands in its place when it cannot be written, and the
// exit status.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <iterator>

#include "tests/tools/OneTemperature.h"
#include "tests/tools/RunTool.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kPageMachine =
    "smbios version 2.3\n"
    "structure 1 handle 0x0100 length 25\n"
    "    string 4 \"Maker <b>\"\n"
    "    string 5 \"Product\"\n";

TEST(HtmlReportTest, ReplacesTheFileAndPrintsNothing) {
    const MachineFolder machine(kPageMachine);
    const TemporaryFolder folder;
    const std::string file = folder.Path() / "report.html";
    WriteFile(file, "old");
    const ToolRun run = machine.Run({"report", "--html", file});
    EXPECT_EQ(run.status, 1) << "there is no BMC";
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr("talvane: cannot open /dev/ipmi: "));
    const std::string page = ReadFile(file);
    EXPECT_THAT(page, StartsWith("<!DOCTYPE html>\n<html lang=\"en\">\n"));
    EXPECT_THAT(page, HasSubstr("<h1>Maker &lt;b&gt; Product</h1>"));
    EXPECT_THAT(page, EndsWith("</html>\n"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST(HtmlReportTest, DisksAndProcessorTimesThatAreMissingAreNamed) {
    const MachineFolder machine(
        "drive hda sectors 1000 model \"EXAMPLE 40\"\n"
        "without /dev/hda EACCES\n"
        "without /proc/stat EACCES\n");
    const std::string file = machine.Path() / "report.html";
    const ToolRun run = machine.Run({"report", "--html", file});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err,
                EndsWith("talvane: cannot open /dev/hda: Permission denied (run as root)\n"
                         "talvane: cannot open /proc/stat: Permission denied (run as root)\n"));
    const std::string page = ReadFile(file);
    EXPECT_THAT(page, HasSubstr("EXAMPLE 40"));
    EXPECT_THAT(page, HasSubstr("<strong>/dev/hd*</strong>: cannot open /dev/hda: "));
    EXPECT_THAT(page, HasSubstr("<strong>/proc/stat</strong>: cannot open /proc/stat: "));
}

TEST(HtmlReportTest, RulesReplaceVerdicts) {
    const MachineFolder machine(kOneTemperature + std::string("reading 0x10 95\n"));
    const std::string file = machine.Path() / "report.html";
    (void)machine.Run({"report", "--html", file});
    EXPECT_THAT(ReadFile(file), HasSubstr("Health: CRITICAL"));
    WriteFile(machine.Path() / "rules", "sensor \"CPU*\" warning\n");
    (void)machine.Run({"report", "--rules", machine.Path() / "rules", "--html", file});
    EXPECT_THAT(ReadFile(file), HasSubstr("Health: WARNING"));
}

TEST(HtmlReportTest, WrongRulesKeepTheFile) {
    const MachineFolder machine(kOneTemperature);
    WriteFile(machine.Path() / "rules", "spoons\n");
    const std::string file = machine.Path() / "report.html";
    WriteFile(file, "old");
    const ToolRun run =
        machine.Run({"report", "--html", file, "--rules", machine.Path() / "rules"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, StartsWith("talvane: " + (machine.Path() / "rules").string() + ":1: "));
    EXPECT_EQ(ReadFile(file), "old");
}

TEST(HtmlReportTest, RulesWithoutItAreRefused) {
    const ToolRun run = RunTool({"report", "--rules", "rules"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, StartsWith("talvane: --rules requires --html\n"));
}

TEST(HtmlReportTest, WhatIsNoFileIsRefusedAndStays) {
    const MachineFolder machine(kPageMachine);
    const std::string fifo = machine.Path() / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string& target : {fifo, machine.Path().string()}) {
        const ToolRun run = machine.Run({"report", "--html", target});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err, "talvane: cannot write " + target + ": not a regular file\n");
    }
    EXPECT_TRUE(std::filesystem::is_fifo(fifo));
}

TEST(HtmlReportTest, AFolderThatIsNotThereIsNamed) {
    const MachineFolder machine(kPageMachine);
    const ToolRun run = machine.Run({"report", "--html", "/nowhere/report.html"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "talvane: cannot write /nowhere/report.html: No such file or directory\n");
}

TEST(HtmlReportTest, JsonIsRefusedBesideIt) {
    const ToolRun run = RunTool({"report", "--json", "--html", "page"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, StartsWith("talvane: --html excludes --json\n"));
}

}  // namespace
