// SPDX-License-Identifier: MIT
//
// A function in a child process returns its record and its output, and leaves no other trace.

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "tools/library/ChildProcess.h"

namespace tool {
namespace {

struct Record {
    int number;
    char folder[256];
};

TEST(ChildProcessTest, BringsBackTheRecordAndTheOutput) {
    const auto answer = FillInChildProcess<Record>([](Record& record) {
        EXPECT_EQ(record.number, 0) << "zero-filled";
        record.number = 42;
        std::printf("without a line end");
    });
    ASSERT_TRUE(answer.has_value());
    EXPECT_EQ(answer->record.number, 42);
    EXPECT_EQ(answer->output, "without a line end");
}

TEST(ChildProcessTest, RunsInAnEmptyFolderThatIsRemoved) {
    const auto here = std::filesystem::current_path();
    const auto answer = FillInChildProcess<Record>([](Record& record) {
        const auto folder = std::filesystem::current_path();
        record.number = std::filesystem::is_empty(folder) ? 1 : 0;
        std::snprintf(record.folder, sizeof record.folder, "%s", folder.c_str());
        std::ofstream("scratch file") << "x";
    });
    ASSERT_TRUE(answer.has_value());
    EXPECT_EQ(answer->record.number, 1);
    EXPECT_FALSE(std::filesystem::exists(answer->record.folder));
    EXPECT_EQ(std::filesystem::current_path(), here);
}

TEST(ChildProcessTest, AChildThatASignalEndsGivesNoRecord) {
    const auto answer = FillInChildProcess<Record>([](Record&) {
        (void)std::signal(SIGTERM, SIG_DFL);
        (void)std::raise(SIGTERM);
    });
    EXPECT_FALSE(answer.has_value());
}

TEST(ChildProcessTest, OutputPrintedBeforeIsWrittenOnlyOnce) {
    testing::internal::CaptureStdout();
    std::printf("before ");
    const auto output = OutputOfChildProcess([] { std::printf("apart"); });
    std::printf("after");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "before after");
    EXPECT_EQ(output, "apart");
}

TEST(ChildProcessTest, AChildThatEndsWithAnotherStatusGivesNoOutput) {
    EXPECT_FALSE(OutputOfChildProcess([] {
                     std::printf("half");
                     (void)std::fflush(stdout);
                     _exit(3);
                 }).has_value());
}

// Nobody can make a folder in /proc/self, not even root.
TEST(ChildProcessTest, NoChildIsMadeWhereNoFolderCanBeMade) {
    setenv("TMPDIR", "/proc/self", 1);
    bool isCalled = false;
    EXPECT_THROW((void)OutputOfChildProcess([&] { isCalled = true; }), std::system_error);
    EXPECT_FALSE(isCalled);
    unsetenv("TMPDIR");
}

}  // namespace
}  // namespace tool
