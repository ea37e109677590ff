// SPDX-License-Identifier: MIT
//
// The command line: what is accepted, what is refused, and the exit status.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>

#include "tests/tools/RunTool.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kPlainMachine =
    "smbios version 2.3\n"
    "structure 0 handle 0x0000 length 20\n"
    "    string 4 \"Maker\"\n";

TEST(CommandLineTest, HelpNamesEveryCommandAndSucceeds) {
    const ToolRun run = RunTool({"--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    for (const char* word :
         {"report",  "health",     "metrics",       "board",         "system",   "cpu",
          "memory",  "ports",      "power",         "fans",          "voltages", "temperatures",
          "sensors", "thresholds", "threshold set", "watchdog",      "bmc",      "pci",
          "drives",  "partitions", "load",          "--machine DIR", "--json",   "--version"})
        EXPECT_THAT(run.out, HasSubstr(word));
}

TEST(CommandLineTest, HelpOfACommandNamesItsOptions) {
    const ToolRun run = RunTool({"cpu", "--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("talvane cpu"));
    EXPECT_THAT(run.out, HasSubstr("--json"));
    EXPECT_THAT(run.out, HasSubstr("--machine DIR"));
}

TEST(CommandLineTest, HelpOfAChangeSaysWhatElseItWrites) {
    const ToolRun run = RunTool({"threshold", "set", "--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("--which THRESHOLD"));
    EXPECT_THAT(run.out, HasSubstr("Not only the threshold asked for is written"));
}

TEST(CommandLineTest, VersionIsOneLine) {
    const ToolRun run = RunTool({"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "talvane " TALVANE_VERSION "\n");
    EXPECT_EQ(run.err, "");
}

struct Refused {
    std::vector<std::string> arguments;
    const char* message;
    const char* command = "";  // whose options the user is pointed to; empty for all commands
};

// For the list of tests.
void PrintTo(const Refused& refused, std::ostream* out) {
    *out << refused.message;
}

class UsageErrorTest : public testing::TestWithParam<Refused> {};

TEST_P(UsageErrorTest, IsExplainedAndAnsweredWithStatus2) {
    const ToolRun run = RunTool(GetParam().arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    const std::string command = GetParam().command;
    EXPECT_EQ(run.err, std::string("talvane: ") + GetParam().message + "\nRun talvane " +
                           (command.empty() ? "--help for the commands.\n"
                                            : command + " --help for its options.\n"));
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, UsageErrorTest,
    testing::Values(
        Refused{{}, "A command is required"}, Refused{{"--json"}, "A command is required"},
        Refused{{"spoons"}, "The following argument was not expected: spoons"},
        Refused{
            {"board", "--spoons"}, "The following argument was not expected: --spoons", "board"},
        Refused{{"board", "fans"}, "The following argument was not expected: fans", "board"},
        Refused{{"board", "--color", "red"}, "--color: red not in {auto,always,never}", "board"},
        Refused{{"board", "--machine"}, "--machine: 1 required DIR missing", "board"},
        Refused{{"board", "--machine", ""}, "--machine: an empty name names no server", "board"},
        Refused{{"board", "--direct", "--host"}, "--direct: goes without --host", "board"},
        Refused{{"--host", "board", "--machine", "x"},
                "--machine: goes without --direct and --host",
                "board"},
        Refused{{"board", "--root", "/"}, "--root: goes with --host or doctor alone", "board"},
        Refused{{"watchdog", "stop", "--yes", "20", "--timeout", "30"},
                "The following arguments were not expected: --yes 20 --timeout 30",
                "watchdog stop"},
        Refused{{"sensors", "--count", "3"}, "--count requires --watch", "sensors"},
        Refused{{"sensors", "--watch", "0"},
                "--watch: 0 is no whole number from 1 to 86400",
                "sensors"},
        Refused{{"sensors", "--watch", "1.5"},
                "--watch: 1.5 is no whole number from 1 to 86400",
                "sensors"},
        Refused{{"sensors", "--watch", "1", "--count", "1000001"},
                "--count: 1000001 is no whole number from 1 to 1000000",
                "sensors"},
        Refused{{"load", "--interval", "0"},
                "--interval: 0 is no whole number from 1 to 86400",
                "load"},
        Refused{{"threshold"}, "threshold: set is required", "threshold"},
        Refused{
            {"watchdog", "bark"}, "The following argument was not expected: bark", "watchdog"}));

Refused RefusedThreshold(const char* entity, const char* type, const char* which, const char* value,
                         const char* message) {
    return {{"threshold", "set", "--entity", entity, "--type", type, "--which", which, value},
            message,
            "threshold set"};
}

INSTANTIATE_TEST_SUITE_P(
    ThresholdSet, UsageErrorTest,
    testing::Values(
        RefusedThreshold("256", "fan", "lower-critical", "1",
                         "--entity: 256 is no entity's name, and no whole number from 0 to 255"),
        RefusedThreshold("1e0", "fan", "lower-critical", "1",
                         "--entity: 1e0 is no entity's name, and no whole number from 0 to 255"),
        RefusedThreshold("0x", "fan", "lower-critical", "1",
                         "--entity: 0x is no entity's name, and no whole number from 0 to 255"),
        RefusedThreshold(
            "99999999999", "fan", "lower-critical", "1",
            "--entity: 99999999999 is no entity's name, and no whole number from 0 to 255"),
        RefusedThreshold("7", "spoon", "lower-critical", "1",
                         "--type: spoon is none of temperature, voltage, fan, nor a number from "
                         "0 to 255"),
        RefusedThreshold("7", "256", "lower-critical", "1",
                         "--type: 256 is none of temperature, voltage, fan, nor a number from "
                         "0 to 255"),
        RefusedThreshold("7", "fan", "critical", "1",
                         "--which: critical is none of lower-non-critical, "
                         "lower-critical, lower-non-recoverable, upper-non-critical, "
                         "upper-critical, upper-non-recoverable"),
        RefusedThreshold("7", "fan", "4", "1",
                         "--which: 4 is none of lower-non-critical, "
                         "lower-critical, lower-non-recoverable, upper-non-critical, "
                         "upper-critical, upper-non-recoverable"),
        RefusedThreshold("7", "fan", "lower-critical", "x", "VALUE: x is no number"),
        RefusedThreshold("7", "fan", "lower-critical", "", "VALUE:  is no number"),
        RefusedThreshold("7", "fan", "lower-critical", "inf", "VALUE: inf is no number")));

INSTANTIATE_TEST_SUITE_P(
    WatchdogSet, UsageErrorTest,
    testing::Values(
        Refused{{"watchdog", "set", "--action", "none", "--timeout", "9.9"},
                "--timeout: 9.9 is no number from 10 to 999",
                "watchdog set"},
        Refused{{"watchdog", "set", "--action", "none", "--timeout", "soon"},
                "--timeout: soon is no number from 10 to 999",
                "watchdog set"},
        Refused{{"watchdog", "set", "--action", "none", "--timeout", "999.1"},
                "--timeout: 999.1 is no number from 10 to 999",
                "watchdog set"},
        Refused{{"watchdog", "set", "--action", "burn", "--timeout", "10"},
                "--action: burn is none of none, hard-reset, power-down, power-cycle",
                "watchdog set"},
        Refused{{"watchdog", "set", "--timeout", "10"}, "--action is required", "watchdog set"}));

TEST(CommandLineTest, TakesTheMachineBeforeAndAfterTheCommand) {
    const MachineFolder machine(kPlainMachine);
    const std::string folder = machine.Path().string();
    const std::vector<std::vector<std::string>> lines{{"--machine", folder, "board"},
                                                      {"board", "--machine", folder},
                                                      {"board", "--machine=" + folder}};
    for (const auto& line : lines) {
        const ToolRun run = RunTool(line);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.err, "");
        EXPECT_THAT(run.out, HasSubstr("  BIOS vendor    Maker\n"));
    }
}

TEST(CommandLineTest, TakesJsonBeforeAndAfterTheCommand) {
    const MachineFolder machine(kPlainMachine);
    const ToolRun after = machine.Run({"voltages", "--json"});
    EXPECT_EQ(after.out,
              "{\n"
              "  \"schema\": 1,\n"
              "  \"voltages\": {\n"
              "    \"quantity\": 0\n"
              "  },\n"
              "  \"errors\": []\n"
              "}\n");
    EXPECT_EQ(machine.Run({"--json", "voltages"}).out, after.out);
}

TEST(CommandLineTest, RefusesAFolderThatIsNoMachine) {
    const TemporaryFolder empty;
    for (const std::string& folder : {empty.Path().string(), empty.Path().string() + "/absent"}) {
        const ToolRun run = RunTool({"report", "--machine", folder});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_THAT(run.err, StartsWith("talvane: "));
        EXPECT_THAT(run.err, HasSubstr(folder));
    }
}

TEST(CommandLineTest, NamesFileAndLineOfABadMachineDescription) {
    const MachineFolder machine("smbios version 2.3\nspoons 3\n");
    const ToolRun run = machine.Run({"report"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, StartsWith("talvane: "));
    EXPECT_THAT(run.err, HasSubstr("machine.txt:2: "));
}

TEST(CommandLineTest, ReportsLostOutput) {
    const MachineFolder machine(kPlainMachine);
    const std::string errors = machine.Path() / "errors";
    for (const std::string& command : {"board --machine " + machine.Path().string(),
                                       std::string("--help"), std::string("--version")}) {
        const int status =
            std::system((TALVANE_TOOL " " + command + " >/dev/full 2>" + errors).c_str());
        EXPECT_EQ(WEXITSTATUS(status), 2) << command;
        EXPECT_EQ(ReadFile(errors), "talvane: cannot write to standard output\n") << command;
    }
}

TEST(CommandLineTest, RepetitionWithoutEndStopsAtASourceThatCannotBeRead) {
    const ToolRun run = MachineFolder("memory 16M\n").Run({"sensors", "--watch", "9"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "Not read\n--------\n  /dev/ipmi  sensors\n");
}

TEST(CommandLineTest, SaysPlainlyThatThereIsNoFolderForTemporaryFiles) {
    const MachineFolder machine(kPlainMachine);
    const std::string errors = machine.Path() / "errors";
    const int status = std::system(("TMPDIR=/nowhere " TALVANE_TOOL " load --machine " +
                                    machine.Path().string() + " 2>" + errors)
                                       .c_str());
    EXPECT_EQ(WEXITSTATUS(status), 2);
    EXPECT_EQ(ReadFile(errors),
              "talvane: there is no folder for temporary files: TMPDIR is wrong\n");
}

TEST(CommandLineTest, TakesTheNameOfAnEntity) {
    const MachineFolder machine("bmc kcs\n");
    const auto set = [&](const char* entity) {
        return machine.Run({"threshold", "set", "--entity", entity, "--type", "fan", "--which",
                            "lower-critical", "1"});
    };
    EXPECT_EQ(set("power supply").err, set("10").err);
    EXPECT_THAT(set("power supply").err,
                HasSubstr("no sensor of the entity power supply (10) and the type fan (4)"));
}

}  // namespace
