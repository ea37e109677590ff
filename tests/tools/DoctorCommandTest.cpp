// SPDX-License-Identifier: MIT
//
// The command talvane doctor on a tree of files in which nearly everything is missing.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/HostTree.h"
#include "tests/tools/RunTool.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

class DoctorCommandTest : public testing::Test {
protected:
    ToolRun Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--root", tree.root.string()});
        return RunTool(arguments);
    }

    HostTree tree;
};

TEST_F(DoctorCommandTest, ServerThatCannotBeReadEndsWithStatus1) {
    const ToolRun run = Run({"doctor"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(run.out, HasSubstr("proc-stat\n"
                                   "---------\n"
                                   "  Finding   the load of processors cannot be read\n"
                                   "  Shown by  open(/proc/stat): ENOENT, No such file or "
                                   "directory\n"
                                   "  Stops     talvane and agents\n"
                                   "  Remedy    mount -t proc proc /proc\n"));
    EXPECT_THAT(run.out, EndsWith("; something stops talvane\n"));
}

TEST_F(DoctorCommandTest, FileOfTheTreeTakesItsFindingAway) {
    tree.Write("proc/stat", "cpu 1 2 3 4\n");
    const ToolRun run = Run({"doctor", "--json"});
    EXPECT_EQ(run.status, 1);
    const auto doctor = nlohmann::json::parse(run.out).at("doctor");
    EXPECT_EQ(doctor.at("well"), false);
    for (const auto& check : doctor.at("checks")) {
        const std::string name = check.at("name");
        // The tool's own files are where they were built.
        if (name == "proc-stat" || name == "library" || name == "preload") {
            EXPECT_EQ(check.at("passed"), true) << name;
        }
        if (name == "ipmi-interface" || name == "pci-functions") {
            EXPECT_EQ(check.at("passed"), false) << name;
        }
    }
}

}  // namespace
