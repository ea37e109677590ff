// SPDX-License-Identifier: MIT
//
// Machines whose physical memory cannot be read: the reason is named, the status is 1.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tools/RunTool.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

// The reason given on a machine; it has to be the last line of the diagnostics, the library's own
// may come before it.
void ExpectReason(const std::string& description, const std::string& reason) {
    const MachineFolder machine(description);
    const ToolRun run = machine.Run({"board"});
    EXPECT_EQ(run.status, 1) << run.err;
    EXPECT_EQ(run.out,
              "Not read\n"
              "--------\n"
              "  /dev/mem  board\n");
    EXPECT_THAT(run.err, EndsWith("talvane: " + reason + "\n"));
}

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
    ExpectReason("memory 16 MiB\n",
                 "no SMBIOS or DMI table in /dev/mem: no entry point between 0xF0000 and 0xFFFEF "
                 "(firmware that boots by UEFI keeps it elsewhere)");
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
