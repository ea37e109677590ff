// SPDX-License-Identifier: MIT
//
// The commands about sensors, run from the command line: repetition, JSON, changes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/tools/RunTool.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kMachine =
    "bmc kcs\n"
    "sensor 0x10 \"CPU Temp\"\n"
    "type 1\n"
    "entity 3\n"
    "unit 1\n"
    "masks 0x3F 0x38\n"
    "reading 0x10 42\n"
    "thresholds 0x10 0x38 0 0 0 80 90 100\n"
    "thresholds 0 0x38 0 0 0 70 75 77\n";

TEST(SensorsCommandTest, WithWatchAndCountShowsThatManyTablesWithoutRealWaiting) {
    const MachineFolder machine(kMachine);
    const ToolRun once = machine.Run({"sensors"});
    EXPECT_EQ(once.status, 0);
    EXPECT_THAT(
        once.out,
        HasSubstr("  0x10  CPU Temp  temperature  processor 1  42 degree C  within limits\n"));
    const ToolRun thrice = machine.Run({"sensors", "--watch", "3600", "--count", "3"});
    EXPECT_EQ(thrice.status, 0);
    EXPECT_EQ(thrice.out, once.out + '\n' + once.out + '\n' + once.out);
}

TEST(SensorsCommandTest, RedrawsItsTableOnATerminal) {
    const MachineFolder machine(kMachine);
    const std::string once = machine.Run({"sensors"}).out;
    EXPECT_EQ(RunToolOnTerminal({"--machine", machine.Path().string(), "sensors", "--watch", "3600",
                                 "--count", "2", "--color", "never"}),
              once + "\x1B[H\x1B[2J" + once);
}

TEST(SensorsCommandTest, RepeatsInJsonWithOneLineForEachRoundThatHasItsTime) {
    const MachineFolder machine(std::string(kMachine) + "reading 0x10 at 10 85\n");
    const ToolRun run = machine.Run({"sensors", "--json", "--watch", "10", "--count", "2"});
    EXPECT_EQ(run.status, 0);
    std::istringstream lines(run.out);
    std::vector<double> readings;
    for (std::string line; std::getline(lines, line);) {
        EXPECT_THAT(line, StartsWith(R"({"schema":1,"time":"20)"));
        const auto json = nlohmann::json::parse(line);
        readings.push_back(json.at("sensors").at("sensors").at(0).at("reading").at("value"));
    }
    EXPECT_THAT(readings, testing::ElementsAre(42, 85));
}

TEST(SensorsCommandTest, ShowsWhatChangesWhileItRepeats) {
    const MachineFolder machine(std::string(kMachine) + "reading 0x10 at 10 85\n");
    const ToolRun run = machine.Run({"sensors", "--watch", "10", "--count", "2"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("  42 degree C  within limits\n"));
    EXPECT_THAT(run.out, HasSubstr("  85 degree C  upper non-critical\n"));
}

TEST(SensorsCommandTest, EndsItsRepetitionWhenTheSourceIsMissing) {
    const ToolRun run =
        MachineFolder("without /dev/mem\n").Run({"sensors", "--watch", "3600", "--count", "3"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "Not read\n--------\n  /dev/ipmi  sensors\n");
}

TEST(SensorsCommandTest, GivesTheThresholdsThatTheBmcHoldsInJson) {
    const auto json = nlohmann::json::parse(MachineFolder(kMachine).Run({"sensors", "--json"}).out);
    const auto& thresholds = json.at("sensors").at("sensors").at(0).at("thresholds");
    EXPECT_EQ(thresholds.at("upperCritical").at("value"), 90);
    EXPECT_EQ(thresholds.at("upperCritical").at("unit"), "degree C");
    EXPECT_TRUE(thresholds.at("lowerCritical").is_null());
}

TEST(SensorsCommandTest, GivesTheThresholdsOfTheSensorAndThoseOfTheRecordForAgents) {
    const auto json =
        nlohmann::json::parse(MachineFolder(kMachine).Run({"sensors", "--library", "--json"}).out);
    const auto& sensor = json.at("librarySensors").at("temperatures").at("sensors").at(0);
    EXPECT_EQ(sensor.at("thresholds").at("upperCritical"), 90.0);
    EXPECT_TRUE(sensor.at("thresholds").at("lowerCritical").is_null());
    EXPECT_EQ(sensor.at("recordThresholds").at("upperCritical"), 75.0);
}

TEST(ThresholdsCommandTest, GivesTheThresholdsThatTheLibraryReadByPlace) {
    const auto json =
        nlohmann::json::parse(MachineFolder(kMachine).Run({"thresholds", "--json"}).out);
    EXPECT_EQ(json.at("thresholds").at(0).at("thresholds").at("upperCritical"), 75.0);
}

const std::vector<std::string> kSet = {"threshold",   "set",     "--entity",       "3", "--type",
                                       "temperature", "--which", "upper-critical", "88"};

TEST(ThresholdSetCommandTest, WithoutYesShowsWhatWouldBeWrittenAndFails) {
    const ToolRun run = MachineFolder(kMachine).Run(kSet);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("Thresholds to be written\n"));
    EXPECT_THAT(run.out, HasSubstr("80 (0x50)  70 (0x46)  changes with it\n"));
    EXPECT_THAT(run.out, HasSubstr("90 (0x5A)  88 (0x58)  asked for\n"));
    EXPECT_EQ(run.err, "talvane: nothing was written; --yes writes this\n");
}

TEST(ThresholdSetCommandTest, WithYesWrites) {
    auto arguments = kSet;
    arguments.push_back("--yes");
    const ToolRun run = MachineFolder(kMachine).Run(arguments);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(run.out, StartsWith("Thresholds written\n"));
    EXPECT_THAT(run.out, HasSubstr(" Before "));
}

TEST(ThresholdSetCommandTest, TakesNegativeValuesAndNumbersOfTypes) {
    const ToolRun run = MachineFolder(kMachine).Run(
        {"threshold", "set", "--entity", "3", "--type", "1", "--which", "upper-critical", "-5"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err,
              "talvane: CPU Temp (0x10) cannot hold -5: its values are from 0 to 255; nothing was "
              "written\n");
    EXPECT_EQ(run.out, "") << "no other value is proposed";
}

TEST(ThresholdSetCommandTest, TakesCodesInDecimalAndHexadecimal) {
    const MachineFolder machine(kMachine);
    const auto set = [&](const char* entity, const char* type) {
        return machine.Run({"threshold", "set", "--entity", entity, "--type", type, "--which",
                            "upper-critical", "88"});
    };
    const std::string expected = machine.Run(kSet).out;
    EXPECT_EQ(set("003", "01").out, expected);
    EXPECT_EQ(set("0x03", "0x1").out, expected);
    EXPECT_EQ(set("0X03", "0X01").out, expected);
    EXPECT_THAT(set("010", "1").err, HasSubstr("the entity power supply (10) ")) << "not octal";
    EXPECT_THAT(set("3", "010").err, HasSubstr(" (10)\n")) << "not octal";
}

TEST(ThresholdSetCommandTest, TakesOptionsOfAllCommandsBeforeItsSecondWord) {
    const MachineFolder machine(kMachine);
    auto arguments = kSet;
    arguments.push_back("--json");
    const std::string expected = machine.Run(arguments).out;
    arguments.pop_back();
    arguments.insert(arguments.begin() + 1, "--json");
    EXPECT_EQ(machine.Run(arguments).out, expected);
}

TEST(ThresholdSetCommandTest, AnswersInJsonWithTheReasonForNotWriting) {
    auto arguments = kSet;
    arguments.push_back("--json");
    const auto json = nlohmann::json::parse(MachineFolder(kMachine).Run(arguments).out);
    EXPECT_EQ(json.at("threshold").at("done"), false);
    EXPECT_EQ(json.at("threshold").at("sensors").at(0).at("written").at("upperCritical"), 88.0);
    EXPECT_EQ(json.at("errors"), nlohmann::json::parse(R"([
        {"source": "threshold set", "message": "nothing was written; --yes writes this"}])"));
}

TEST(WatchdogCommandTest, ShowsTheTimerWithAndWithoutTheWord) {
    const MachineFolder machine(kMachine);
    const ToolRun run = machine.Run({"watchdog", "show"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, StartsWith("Watchdog\n"));
    EXPECT_EQ(machine.Run({"watchdog"}).out, run.out);
}

TEST(WatchdogCommandTest, AsksForYesBeforeItStartsATimerWithAnAction) {
    const MachineFolder machine(kMachine);
    const ToolRun asked =
        machine.Run({"watchdog", "set", "--action", "power-cycle", "--timeout", "10"});
    EXPECT_EQ(asked.status, 1);
    EXPECT_THAT(asked.err, EndsWith("nothing was changed, --yes does it\n"));
    EXPECT_THAT(asked.out, HasSubstr("  Action   none\n"));
    const ToolRun told =
        machine.Run({"watchdog", "set", "--action", "power-cycle", "--timeout", "10", "--yes"});
    EXPECT_EQ(told.status, 0);
    EXPECT_THAT(told.out, HasSubstr("  Action   power-cycle\n  Timeout  10.0 s\n"));
}

TEST(WatchdogCommandTest, ResetAsksForYesAndStopDoesNot) {
    const MachineFolder machine(kMachine);
    EXPECT_EQ(machine.Run({"watchdog", "reset"}).status, 1);
    const ToolRun stopped = machine.Run({"watchdog", "stop"});
    EXPECT_EQ(stopped.status, 0);
    EXPECT_THAT(stopped.out, HasSubstr("  Timeout  180.0 s\n"));
}

}  // namespace
