// SPDX-License-Identifier: MIT
//
// Messages on standard error, for people and for the journal.

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "bridge/Log.h"

namespace {

using bridge::Priority;
using ::testing::HasSubstr;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

class LogTest : public ::testing::Test {
protected:
    LogTest() { CaptureStderr(); }
    ~LogTest() override {
        unsetenv("JOURNAL_STREAM");
        bridge::LogEverything(false);
    }

    // As the service manager sets it: device and inode of standard error.
    static void SetJournal(unsigned long long other) {
        struct stat error {};
        ASSERT_EQ(fstat(STDERR_FILENO, &error), 0);
        const std::string stream =
            std::to_string(error.st_dev) + ':' + std::to_string(error.st_ino + other);
        setenv("JOURNAL_STREAM", stream.c_str(), 1);
    }
};

TEST_F(LogTest, AMessageNamesTheProgram) {
    bridge::Log(Priority::kWarning, "such and such");
    EXPECT_EQ(GetCapturedStderr(), "talvane-ipmi-bridge: such and such\n");
}

TEST_F(LogTest, TheJournalGetsThePriority) {
    SetJournal(0);
    bridge::Log(Priority::kWarning, "such and such");
    EXPECT_EQ(GetCapturedStderr(), "<4>such and such\n");
}

TEST_F(LogTest, AJournalVariableForAnotherFileIsIgnored) {
    SetJournal(1);
    bridge::Log(Priority::kError, "such and such");
    EXPECT_EQ(GetCapturedStderr(), "talvane-ipmi-bridge: such and such\n");
}

TEST_F(LogTest, ALongMessageIsCutToOneLine) {
    bridge::Log(Priority::kError, std::string(5000, 'x'));
    EXPECT_EQ(GetCapturedStderr(), "talvane-ipmi-bridge: " + std::string(400, 'x') + '\n');
}

TEST_F(LogTest, ADebugMessageIsDropped) {
    bridge::Log(Priority::kDebug, "such and such");
    EXPECT_EQ(GetCapturedStderr(), "");
}

TEST_F(LogTest, ADebugMessageIsLoggedWhenAskedFor) {
    bridge::LogEverything(true);
    bridge::Log(Priority::kDebug, "such and such");
    EXPECT_THAT(GetCapturedStderr(), HasSubstr("such and such"));
}

}  // namespace
