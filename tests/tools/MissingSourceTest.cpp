// SPDX-License-Identifier: MIT
//
// On machines where something cannot be read, the tool names the reason and ends with status 1.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <nlohmann/json.hpp>

#include "tests/tools/RunTool.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

// The reason given on a machine is the last line of the diagnostics; the library's own may come
// before it.
void ExpectReason(const MachineFolder& machine, const std::string& reason) {
    const ToolRun run = machine.Run({"board"});
    EXPECT_EQ(run.status, 1) << run.err;
    EXPECT_EQ(run.out,
              "Not read\n"
              "--------\n"
              "  /dev/mem  board\n");
    EXPECT_THAT(run.err, EndsWith("talvane: " + reason + "\n"));
}

void ExpectReason(const std::string& description, const std::string& reason) {
    ExpectReason(MachineFolder(description), reason);
}

// 16 MiB of memory and an entry point with the address of a table of 256 bytes.
class MachineWithTableAt : public MachineFolder {
public:
    explicit MachineWithTableAt(std::uint32_t address)
        : MachineFolder("memory 16M\nsegment segment.bin\n") {
        std::string segment(0x10000, '\0');
        segment.replace(0x20, 4, "_SM_");
        segment[0x20 + 23] = 1;
        for (std::size_t i = 0; i < 4; ++i)
            segment[0x20 + 24 + i] = static_cast<char>(address >> 8 * i);
        WriteFile(Path() / "segment.bin", segment);
    }
};

TEST(MissingSourceTest, IsExplainedByPermission) {
    ExpectReason("without /dev/mem EACCES\n",
                 "cannot open /dev/mem: Permission denied (run as root)");
    ExpectReason("without /dev/mem EPERM\n",
                 "cannot open /dev/mem: Operation not permitted (it takes root with CAP_SYS_RAWIO "
                 "and a kernel that allows it)");
}

TEST(MissingSourceTest, IsExplainedByAMissingDevice) {
    ExpectReason("without /dev/mem ENOENT\n",
                 "cannot open /dev/mem: No such file or directory (the kernel or container offers "
                 "no such device)");
}

TEST(MissingSourceTest, IsExplainedByAnotherErrorOfTheDevice) {
    ExpectReason("without /dev/mem EIO\n", "cannot open /dev/mem: Input/output error");
}

TEST(MissingSourceTest, IsExplainedByAMissingEntryPoint) {
    ExpectReason("memory 16M\n",
                 "no SMBIOS or DMI table in /dev/mem: no entry point between 0xF0000 and 0xFFFEF "
                 "(firmware that boots by UEFI keeps it elsewhere)");
}

TEST(MissingSourceTest, IsExplainedByATableOutOfReach) {
    ExpectReason(MachineWithTableAt(0x3001000),
                 "cannot read the SMBIOS table at 0x3001000 of /dev/mem: Bad address");
    ExpectReason(MachineWithTableAt(0xBF7E0000),
                 "cannot read the SMBIOS table at 0xBF7E0000 of /dev/mem: it lies above 2 GiB");
}

TEST(MissingSourceTest, IsExplainedByATableWhoseReadLeavesMemory) {
    ExpectReason(MachineWithTableAt(0xA00100),
                 "cannot read the SMBIOS table at 0xA00100 of /dev/mem: it takes one read of 10304 "
                 "KiB from 0xA00000, which failed");
}

TEST(MissingSourceTest, IsNamedOncePerReport) {
    const MachineFolder machine("without /dev/mem EACCES\n");
    const ToolRun text = machine.Run({"report"});
    EXPECT_EQ(text.status, 1);
    EXPECT_THAT(text.out,
                EndsWith("Not read\n"
                         "--------\n"
                         "  /dev/mem   system, board, cpu, memory, ports, power, fans, voltages, "
                         "temperatures\n"
                         "  /dev/ipmi  sensors, thresholds, watchdog, bmc\n"
                         "  /proc/ide  drives, partitions\n"));
    EXPECT_THAT(
        text.err,
        EndsWith("\n"
                 "talvane: cannot open /dev/mem: Permission denied (run as root)\n"
                 "talvane: cannot open /dev/ipmi: No such file or directory (no BMC, or its "
                 "driver is not loaded)\n"
                 "talvane: cannot open /proc/ide: No such file or directory (no IDE controller, or "
                 "a kernel from 5.14 on)\n"));
}

TEST(MissingSourceTest, IsNullInJsonWithTheReasonBesideIt) {
    const MachineFolder machine("without /dev/mem EACCES\nbmc kcs\n");
    const ToolRun run = machine.Run({"report", "--json"});
    EXPECT_EQ(run.status, 1);
    const auto json = nlohmann::json::parse(run.out);
    for (const char* command :
         {"system", "board", "cpu", "memory", "ports", "power", "fans", "voltages", "temperatures"})
        EXPECT_TRUE(json.at(command).is_null()) << command;
    EXPECT_EQ(json.at("bmc").at("firmware"), "1.00");
    for (const char* command : {"drives", "partitions"})
        EXPECT_TRUE(json.at(command).is_null()) << command;
    EXPECT_EQ(json.at("errors"), nlohmann::json::parse(R"json([
        {"source": "/dev/mem",
         "message": "cannot open /dev/mem: Permission denied (run as root)"},
        {"source": "/proc/ide",
         "message": "cannot open /proc/ide: No such file or directory (no IDE controller, or a kernel from 5.14 on)"}])json"));
}

// One command on a machine with one reason.
struct Missing {
    const char* command;
    const char* description;
    const char* output;
    const char* reason;
};

// For the list of tests.
void PrintTo(const Missing& missing, std::ostream* out) {
    *out << missing.reason;
}

class OtherSourceTest : public testing::TestWithParam<Missing> {};

TEST_P(OtherSourceTest, IsExplained) {
    const ToolRun run = MachineFolder(GetParam().description).Run({GetParam().command});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, GetParam().output);
    EXPECT_THAT(run.err, EndsWith(std::string("talvane: ") + GetParam().reason + '\n'));
}

constexpr const char* kNoSensors = "Not read\n--------\n  /dev/ipmi  sensors\n";

INSTANTIATE_TEST_SUITE_P(
    MissingSource, OtherSourceTest,
    testing::Values(
        Missing{"sensors", "memory 16M\n", kNoSensors,
                "cannot open /dev/ipmi: No such file or directory (no BMC, or its driver is not "
                "loaded)"},
        Missing{"sensors", "bmc kcs\nwithout /dev/ipmi EACCES\n", kNoSensors,
                "cannot open /dev/ipmi: Permission denied (run as root)"},
        Missing{"sensors", "bmc none\n", kNoSensors,
                "no BMC answers at port 0xCA3 (KCS) or 0xCAA (SMIC)"},
        Missing{"drives", "without /proc/ide EACCES\n", "Not read\n--------\n  /proc/ide  drives\n",
                "cannot open /proc/ide: Permission denied (run as root)"},
        Missing{"partitions",
                "drive hda sectors 1000000\n"
                "entry hda 0 1 0x83 63 500000\n"
                "drive hdb sectors 1000000\n"
                "without /dev/hdb EACCES\n",
                "Partitions\n----------\n"
                "  Partition  Type       Size\n"
                "  /dev/hda1  Linux  256.0 MB\n"
                "\nNot read\n--------\n  /dev/hd*  partitions\n",
                "cannot open /dev/hdb: Permission denied (run as root)"},
        Missing{"load", "without /proc/stat EACCES\nfree total 200 used 50\n",
                "Load\n----\n"
                "  Part         Use\n"
                "  Processors     -\n"
                "  Memory      25 %\n"
                "\n"
                "  Processors: not idle, within 1 s. Memory: as the command free counts it.\n"
                "\nNot read\n--------\n  /proc/stat  load\n",
                "cannot open /proc/stat: Permission denied (run as root)"},
        Missing{"load", "cpu 0 user 0\n",
                "Load\n----\n"
                "  Part        Use\n"
                "  Processors    -\n"
                "  Memory      0 %\n"
                "\n"
                "  Processors: not idle, within 1 s. Memory: as the command free counts it.\n"
                "\nNot read\n--------\n  /proc/stat  load\n",
                "the counters of a processor in /proc/stat stood still or went away"}),
    [](const auto& missing) {
        return std::string(missing.param.command) + std::to_string(missing.index);
    });

}  // namespace
