// SPDX-License-Identifier: MIT
//
// One value of the JSON output, by its path.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/RunTool.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kServerWithBoard =
    "smbios version 2.3\n"
    "structure 2 handle 0x0200 length 8\n"
    "    string 7 \"SB \\x1B 17\"\n"
    "bmc kcs\n"
    "sensor 0x10 \"CPU Temp\"\n"
    "type 1\n"
    "entity 3\n"
    "unit 1\n"
    "reading 0x10 42\n"
    "pci 0:1.0 8086:1234\n";

class GetCommandTest : public testing::Test {
protected:
    ToolRun Get(const std::string& path) const { return machine_.Run({"get", path}); }

    void ExpectValue(const std::string& path, const std::string& value) const {
        const ToolRun run = Get(path);
        EXPECT_EQ(run.out, value + '\n') << path;
        EXPECT_EQ(run.status, 0) << path;
        EXPECT_EQ(run.err, "") << path;
    }

    void ExpectNothing(const std::string& path, const std::string& reason) const {
        const ToolRun run = Get(path);
        EXPECT_EQ(run.out, "") << path;
        EXPECT_EQ(run.status, 1) << path;
        EXPECT_THAT(run.err, StartsWith("talvane: " + reason)) << path;
    }

private:
    const MachineFolder machine_{kServerWithBoard};
};

TEST_F(GetCommandTest, PrintsATextWithoutControlCharacters) {
    ExpectValue("board.serial-number", "SB \\x1B 17");
    ExpectValue("board.serialNumber", "SB \\x1B 17");
}

TEST_F(GetCommandTest, PrintsAQuantityAsItsTextAndItsMembersAlone) {
    ExpectValue("sensors.sensors.0.reading", "42 degree C");
    ExpectValue("sensors.sensors.cpu-temp.reading.value", "42");
    ExpectValue("library-sensors.temperatures.sensors.0.reading", "42.00degree C");
}

TEST_F(GetCommandTest, PrintsListsAndObjectsAsJson) {
    ExpectValue("sensors.sensors.0.states", R"(["no thresholds"])");
    ExpectValue("sensors.sensors.0.type", R"({"code":1,"name":"temperature"})");
    ExpectValue("health.verdict", "OK");
}

TEST_F(GetCommandTest, SaysWhyThereIsNoValue) {
    ExpectNothing("board.product", "board.product: the machine does not say it");
    ExpectNothing("board.spoons", "there is no board.spoons");
    ExpectNothing("spoons", "there is no spoons");
    ExpectNothing("sensors.sensors.1", "there is no sensors.sensors.1");
    ExpectNothing("board.serial-number.x", "there is no board.serial-number.x");
    ExpectNothing("drives.0.model", "cannot open /proc/ide: ");
}

TEST_F(GetCommandTest, FindsAnElementByItsAddress) {
    ExpectValue("pci.00-01-0.address", "00:01.0");
}

TEST_F(GetCommandTest, FindsNoElementByAWordThatIsNeitherItsPlaceNorItsName) {
    for (const char* word : {"fan", "+0", ""}) {
        const std::string path = std::string("sensors.sensors.") + word;
        ExpectNothing(path, "there is no " + path);
    }
    ExpectNothing("pci.spoon", "there is no pci.spoon");
}

TEST(GetCommandLineTest, NeedsAPath) {
    const ToolRun run = RunTool({"get"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("PATH is required"));
}

}  // namespace
