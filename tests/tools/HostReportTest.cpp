// SPDX-License-Identifier: MIT
//
// The tool on the running system, which is a tree of files here: what it reads, what it says about
// the way, and what it says about the rest.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/tools/MachineTree.h"
#include "tests/tools/RunTool.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

// A report through the kernel's files is the report of the machine that they were made from.
class SameReportTest : public testing::TestWithParam<const char*> {};

TEST_P(SameReportTest, ReportOfTheTreeIsThatOfItsMachine) {
    const std::string folder = TALVANE_SOURCE "/machines/" + std::string(GetParam());
    const HostTree tree;
    WriteTree(folder, tree);
    const ToolRun host = RunTool({"report", "--host", "--root", tree.root, "--json"});
    const ToolRun home = RunTool({"report", "--machine", folder, "--json"});
    const nlohmann::json read = nlohmann::json::parse(host.out);
    const nlohmann::json wanted = nlohmann::json::parse(home.out);
    for (const char* member : {"system", "board", "cpu", "memory", "ports", "power", "fans",
                               "voltages", "temperatures", "pci", "drives", "partitions"}) {
        // Without an IDE controller a machine has no list of drives; a running system has one.
        if (wanted.at(member).is_null())
            EXPECT_TRUE(read.at(member).empty()) << member;
        else
            EXPECT_EQ(read.at(member), wanted.at(member)) << member;
    }
    EXPECT_TRUE(read.at("sensors").is_null());
    EXPECT_FALSE(read.at("load").is_null());
}

INSTANTIATE_TEST_SUITE_P(Machines, SameReportTest,
                         testing::Values("full-server", "qemu-4-sockets", "qemu-small"),
                         [](const auto& machine) {
                             std::string name = machine.param;
                             std::erase(name, '-');
                             return name;
                         });

class HostReportTest : public testing::Test {
protected:
    HostReportTest() {
        tree.Write("sys/bus/pci/devices/0000:00:00.0/config",
                   std::string("\x86\x80\x01\x02") + std::string(60, '\0'));
        tree.Write("sys/block/sda/size", "2\n");
        tree.Write("sys/block/sda/device/model", "DISK\n");
        tree.Write("proc/stat", "cpu 1 2 3 4\ncpu0 1 2 3 4\n");
    }

    ToolRun Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--host", "--root", tree.root});
        return RunTool(arguments);
    }
    std::string Path(const std::string& name) const { return (tree.root / name).string(); }

    HostTree tree;
};

TEST_F(HostReportTest, ReportEndsWithTheWaysAndTheReasons) {
    const ToolRun run = Run({"report"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, EndsWith("Read from\n---------\n"
                                  "  SMBIOS  nothing, " +
                                  Path("sys/firmware/dmi/tables") +
                                  " cannot be read\n"
                                  "  BMC     nothing, " +
                                  Path("dev/ipmi0") +
                                  " cannot be read\n"
                                  "  PCI     " +
                                  Path("sys/bus/pci/devices") +
                                  ", through the kernel\n"
                                  "  Drives  " +
                                  Path("sys/block") +
                                  ", through the kernel (hda is sda)\n"
                                  "  Load    /proc/stat, directly\n"));
    EXPECT_THAT(run.out, HasSubstr("Not read\n--------\n"));
    EXPECT_THAT(run.err, HasSubstr("talvane: cannot open " + Path("dev/ipmi0") +
                                   ": No such device (no BMC, or its driver is not loaded: "
                                   "modprobe ipmi_si ipmi_devintf)\n"));
}

TEST_F(HostReportTest, CommandReadsItsAreaAlone) {
    const ToolRun run = Run({"pci", "--json"});
    EXPECT_EQ(run.status, 0) << run.err;
    const nlohmann::json output = nlohmann::json::parse(run.out);
    EXPECT_EQ(output.at("pci").size(), 1u);
    EXPECT_EQ(output.at("ways"), nlohmann::json({{"pci",
                                                  {{"way", "host"},
                                                   {"from", Path("sys/bus/pci/devices")},
                                                   {"note", nullptr},
                                                   {"read", true}}}}));
}

TEST_F(HostReportTest, AreaThatCannotBeReadIsNullWithItsReason) {
    const ToolRun run = Run({"board", "--json"});
    EXPECT_EQ(run.status, 1);
    const nlohmann::json output = nlohmann::json::parse(run.out);
    EXPECT_TRUE(output.at("board").is_null());
    EXPECT_EQ(output.at("ways").at("smbios").at("read"), false);
    EXPECT_EQ(output.at("errors").at(0).at("source"), Path("sys/firmware/dmi/tables"));
}

TEST_F(HostReportTest, EveryCommandNamesTheKernelsDeviceThatCannotBeOpened) {
    const std::string complaint = "cannot open " + Path("dev/ipmi0") + ": No such device";
    EXPECT_THAT(Run({"health"}).err, HasSubstr(complaint));
    EXPECT_THAT(Run({"get", "health.verdict"}).err, HasSubstr(complaint));
    EXPECT_THAT(Run({"watchdog", "stop"}).err, HasSubstr(complaint));
    EXPECT_THAT(
        Run({"metrics", "--no-pci"}).out,
        HasSubstr("talvane_source_problem_info{source=\"/dev/ipmi\",reason=\"" + complaint));
}

TEST_F(HostReportTest, DiskThatCannotBeOpenedIsListedWithoutItsPartitions) {
    const ToolRun drives = Run({"drives"});
    EXPECT_EQ(drives.status, 0) << drives.err;
    EXPECT_THAT(drives.out, HasSubstr("DISK"));
    const ToolRun partitions = Run({"partitions"});
    EXPECT_EQ(partitions.status, 1);
    EXPECT_EQ(partitions.out, "Partitions\n----------\n  none\n\nNot read\n--------\n  " +
                                  Path("dev/sda") + "  partitions\n");
    EXPECT_EQ(partitions.err, "talvane: cannot open " + Path("dev/sda") +
                                  ": No such file or directory (there is no such device file)\n");
}

TEST_F(HostReportTest, MetricsNameTheKernelsDiskThatCannotBeOpened) {
    EXPECT_THAT(Run({"metrics", "--no-pci"}).out,
                HasSubstr("talvane_source_problem_info{source=\"/dev/hd*\",reason=\"cannot open " +
                          Path("dev/sda") + ": "));
}

TEST_F(HostReportTest, DisksThatCanBeOpenedHaveNoProblem) {
    tree.Write("dev/sda", std::string(1024, '\0'));
    const ToolRun partitions = Run({"partitions"});
    EXPECT_EQ(partitions.status, 0) << partitions.err;
    EXPECT_EQ(partitions.err, "");
}

TEST_F(HostReportTest, SectionOfWaysIsInTheReportAlone) {
    EXPECT_THAT(Run({"pci"}).out, testing::Not(HasSubstr("Read from")));
}

TEST(ReadingTest, DirectReadingDoesNotFallBack) {
    const ToolRun run = RunTool({"pci", "--direct", "--json"});
    EXPECT_EQ(nlohmann::json::parse(run.out).at("ways").at("pci").at("way"), "direct");
}

TEST(ReadingTest, LoadIsReadDirectlyWhateverTheChoice) {
    const ToolRun run = RunTool({"load", "--json"});
    EXPECT_EQ(nlohmann::json::parse(run.out).at("ways").at("load").at("way"), "direct");
}

TEST(ReadingTest, OptionMayBeGivenBeforeTheCommandAndAfterIt) {
    const ToolRun run = RunTool({"--direct", "pci", "--direct", "--json"});
    EXPECT_EQ(nlohmann::json::parse(run.out).at("ways").at("pci").at("way"), "direct") << run.err;
}

// Which way is taken is up to the machine that runs the tests.
TEST(ReadingTest, PciAndDrivesAreReadInOneOfTheTwoWays) {
    for (const char* command : {"pci", "drives"}) {
        const ToolRun run = RunTool({command, "--json"});
        EXPECT_THAT(nlohmann::json::parse(run.out).at("ways").at(command).at("way"),
                    testing::AnyOf("direct", "host"))
            << run.err;
    }
}

TEST(ReadingTest, SimulatedServerHasNoWays) {
    const ToolRun run =
        RunTool({"pci", "--json", "--machine", TALVANE_SOURCE "/machines/full-server"});
    EXPECT_FALSE(nlohmann::json::parse(run.out).contains("ways"));
}

}  // namespace
