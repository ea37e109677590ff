// SPDX-License-Identifier: MIT
//
// The command health, run from the command line: status, forms, rules, and what goes wrong.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/tools/OneTemperature.h"
#include "tests/tools/RunTool.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

MachineFolder MachineAt(const std::string& reading) {
    return MachineFolder(kOneTemperature + ("reading 0x10 " + reading + '\n'));
}

TEST(HealthCommandTest, ItsStatusIsThatOfMonitoringPlugins) {
    EXPECT_EQ(MachineAt("42").Run({"health"}).status, 0);
    EXPECT_EQ(MachineAt("85").Run({"health"}).status, 1);
    EXPECT_EQ(MachineAt("95").Run({"health"}).status, 2);
    EXPECT_EQ(MachineAt("unavailable").Run({"health"}).status, 3);
    for (const char* form : {"--json", "--format=nagios", "--format=json"})
        EXPECT_EQ(MachineAt("95").Run({"health", form}).status, 2) << form;
}

TEST(HealthCommandTest, WithoutABmcIsUnknownInEveryForm) {
    const MachineFolder machine("without /dev/mem\n");
    const ToolRun text = machine.Run({"health"});
    EXPECT_EQ(text.status, 3);
    EXPECT_EQ(text.out, "");
    EXPECT_THAT(text.err, StartsWith("talvane: cannot open /dev/ipmi: "));
    EXPECT_THAT(machine.Run({"health", "--format", "nagios"}).out,
                StartsWith("SENSORS UNKNOWN - cannot open /dev/ipmi: "));
    const auto json = nlohmann::json::parse(machine.Run({"health", "--json"}).out);
    EXPECT_TRUE(json.at("health").is_null());
    EXPECT_EQ(json.at("errors").at(0).at("source"), "/dev/ipmi");
}

TEST(HealthCommandTest, AMistakeOnTheCommandLineIsUnknownAndNotCritical) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"health", "--spoons"}, {"health", "--format", "xml"}})
        EXPECT_EQ(RunTool(arguments).status, 3);
    EXPECT_EQ(RunTool({"health", "--machine", "/nonexistent"}).status, 3);
}

TEST(HealthCommandTest, TakesVerdictsFromARulesFile) {
    const MachineFolder machine = MachineAt("85");
    const auto withRules = [&](const std::string& rules) {
        WriteFile(machine.Path() / "rules", rules);
        return machine.Run({"health", "--rules", machine.Path() / "rules"});
    };
    EXPECT_EQ(withRules("sensor \"CPU*\" state \"upper non-critical\" ok\n").status, 0);
    EXPECT_EQ(withRules("entity processor critical\n").status, 2);
    const ToolRun wrong = withRules("\nsensor\n");
    EXPECT_EQ(wrong.status, 3);
    EXPECT_THAT(wrong.err,
                EndsWith("/rules:2: \"sensor\" is none of ok, warning, critical, unknown "
                         "and ignore\n"));
    EXPECT_EQ(wrong.out, "");
}

TEST(HealthCommandTest, ARulesFileThatCannotBeReadIsUnknown) {
    const MachineFolder machine = MachineAt("42");
    for (const std::string& file : {std::string("/nonexistent/rules"), machine.Path().string()}) {
        const ToolRun run = machine.Run({"health", "--format", "nagios", "--rules", file});
        EXPECT_EQ(run.status, 3);
        EXPECT_THAT(run.out, StartsWith("SENSORS UNKNOWN - " + file + ": "));
    }
}

TEST(HealthCommandTest, ListsTheStatesInJson) {
    const ToolRun run = RunTool({"health", "--states", "--json"});
    EXPECT_EQ(run.status, 0);
    const auto output = nlohmann::json::parse(run.out);
    EXPECT_EQ(output.at("schema"), 1);
    EXPECT_EQ(output.at("errors").size(), 0U);
    const auto& states = output.at("states");
    EXPECT_EQ(states[0].dump(), R"({"kind":"any","state":"no reading","verdict":"UNKNOWN"})");
    EXPECT_GT(states.size(), 150U);
    EXPECT_EQ(RunTool({"health", "--states", "--format", "json"}).out, run.out);
}

TEST(HealthCommandTest, RefusesTheStatesAsAPluginsOutput) {
    const ToolRun run = RunTool({"health", "--states", "--format", "nagios"});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, StartsWith("talvane: --states: there is no such output for a monitoring "
                                    "plugin\nRun talvane health --help"));
}

TEST(HealthCommandTest, JudgesEverySensorInJsonWithItsReason) {
    const ToolRun run =
        RunTool({"health", "--json", "--machine", TALVANE_SOURCE "/machines/failing-server"});
    EXPECT_EQ(run.status, 2);
    const auto health = nlohmann::json::parse(run.out).at("health");
    EXPECT_EQ(health.at("verdict"), "CRITICAL");
    EXPECT_EQ(health.at("status"), 2);
    EXPECT_EQ(health.at("counts"),
              nlohmann::json::parse(
                  R"({"ok": 11, "warning": 3, "critical": 3, "unknown": 1, "notJudged": 1})"));
    for (const auto& sensor : health.at("sensors")) {
        if (sensor.at("name") != "PSU 2") continue;
        EXPECT_EQ(sensor.at("verdict"), "CRITICAL");
        EXPECT_EQ(sensor.at("reason"), "input lost");
        EXPECT_EQ(sensor.at("entity").at("name"), "power supply");
        EXPECT_TRUE(sensor.at("reading").is_null());
    }
}

TEST(SensorsCommandTest, ShowsRecordsOfAgentsOnRequest) {
    const MachineFolder machine = MachineAt("42");
    EXPECT_THAT(machine.Run({"sensors", "--library"}).out,
                HasSubstr("  CPU Temp  temperature  processor  42.00 degree C  ok "));
    const auto json = nlohmann::json::parse(machine.Run({"sensors", "--library", "--json"}).out);
    EXPECT_EQ(json.at("librarySensors").at("temperatures").at("quantity"), 1);
}

}  // namespace
