// SPDX-License-Identifier: MIT
//
// Machines whose physical memory cannot be read: the reason is named, the status is 1.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <nlohmann/json.hpp>

#include "tools/RunTool.h"

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

// 16 MiB of memory and an entry point that tells where a table of 256 bytes lies.
class MachineWithTableAt : public MachineFolder {
public:
    explicit MachineWithTableAt(std::uint32_t address)
        : MachineFolder("memory 16M\nsegment segment.bin\n") {
        std::string segment(0x10000, '\0');
        segment.replace(0x20, 4, "_SM_");
        segment[0x20 + 23] = 1;
        for (std::size_t i = 0; i < 4; ++i)
            segment[0x20 + 24 + i] = static_cast<char>(address >> 8 * i);
        WriteFile(path() / "segment.bin", segment);
    }
};

TEST(MissingSource, IsExplainedByPermission) {
    ExpectReason("without /dev/mem EACCES\n",
                 "cannot open /dev/mem: Permission denied (run as root)");
    ExpectReason("without /dev/mem EPERM\n",
                 "cannot open /dev/mem: Operation not permitted (it takes root with CAP_SYS_RAWIO "
                 "and a kernel that allows it)");
}

TEST(MissingSource, IsExplainedByAMissingDevice) {
    ExpectReason("without /dev/mem ENOENT\n",
                 "cannot open /dev/mem: No such file or directory (the kernel or container offers "
                 "no such device)");
}

TEST(MissingSource, IsExplainedByAnotherErrorOfTheDevice) {
    ExpectReason("without /dev/mem EIO\n", "cannot open /dev/mem: Input/output error");
}

TEST(MissingSource, IsExplainedByAMissingEntryPoint) {
    ExpectReason("memory 16M\n",
                 "no SMBIOS or DMI table in /dev/mem: no entry point between 0xF0000 and 0xFFFEF "
                 "(firmware that boots by UEFI keeps it elsewhere)");
}

TEST(MissingSource, IsExplainedByATableOutOfReach) {
    ExpectReason(MachineWithTableAt(0x3001000),
                 "cannot read the SMBIOS table at 0x3001000 of /dev/mem: Bad address");
    ExpectReason(MachineWithTableAt(0xBF7E0000),
                 "cannot read the SMBIOS table at 0xBF7E0000 of /dev/mem: it lies above 2 GiB");
}

TEST(MissingSource, IsExplainedByATableWhoseReadLeavesMemory) {
    ExpectReason(MachineWithTableAt(0xA00100),
                 "cannot read the SMBIOS table at 0xA00100 of /dev/mem: it takes one read of 10304 "
                 "KiB from 0xA00000, which failed");
}

TEST(MissingSource, IsNamedOncePerReport) {
    const MachineFolder machine("without /dev/mem EACCES\n");
    const ToolRun text = machine.Run({"report"});
    EXPECT_EQ(text.status, 1);
    EXPECT_EQ(text.out,
              "Not read\n"
              "--------\n"
              "  /dev/mem  system, board, cpu, memory, ports, power, fans, voltages, "
              "temperatures\n");
    const std::string line = "talvane: cannot open /dev/mem: Permission denied (run as root)\n";
    EXPECT_THAT(text.err, EndsWith(line));
    EXPECT_EQ(text.err.find("talvane: "), text.err.size() - line.size());
}

TEST(MissingSource, IsNullInJsonWithTheReasonBesideIt) {
    const MachineFolder machine("without /dev/mem EACCES\n");
    const ToolRun run = machine.Run({"report", "--json"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(nlohmann::json::parse(run.out), nlohmann::json::parse(R"json({
        "system": null, "board": null, "cpu": null, "memory": null, "ports": null, "power": null,
        "fans": null, "voltages": null, "temperatures": null,
        "errors": [{"source": "/dev/mem",
                    "message": "cannot open /dev/mem: Permission denied (run as root)"
}]
})json"));
}

}  // namespace
