// SPDX-License-Identifier: MIT
//
// Messages that callers can cause at will.

#include <gmock/gmock.h>

#include <cerrno>
#include <chrono>
#include <string>

#include "bridge/LimitedLog.h"

namespace {

using bridge::LimitedLog;
using bridge::Priority;
using std::chrono::seconds;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

class LimitedLogTest : public ::testing::Test {
protected:
    LimitedLogTest() { CaptureStderr(); }
    ~LimitedLogTest() override { bridge::LogEverything(false); }

    // Logs this many messages at this second.
    void LogAt(seconds second, int count) {
        for (int i = 0; i < count; ++i) log.Log(Priority::kInfo, "message", start + second);
    }
    static std::string Lines(int count) {
        std::string lines;
        for (int i = 0; i < count; ++i) lines += "talvane-ipmi-bridge: message\n";
        return lines;
    }

    const LimitedLog::Clock::time_point start = LimitedLog::Clock::now();
    LimitedLog log{3, seconds(10)};
};

TEST_F(LimitedLogTest, TheFirstMessagesAreLogged) {
    LogAt(seconds(0), 3);
    EXPECT_EQ(GetCapturedStderr(), Lines(3));
}

TEST_F(LimitedLogTest, OfManyMessagesAtOnceTheFirstAreLogged) {
    LogAt(seconds(0), 1000);
    EXPECT_EQ(GetCapturedStderr(), Lines(3));
}

TEST_F(LimitedLogTest, AfterAnIntervalOneMoreIsLoggedWithTheNumberOfThoseLeftOut) {
    LogAt(seconds(0), 8);
    LogAt(seconds(9), 1);
    LogAt(seconds(12), 2);
    LogAt(seconds(20), 2);
    EXPECT_EQ(GetCapturedStderr(),
              Lines(3) +
                  "talvane-ipmi-bridge: 6 messages like the next were left out\n"
                  "talvane-ipmi-bridge: message\n"
                  "talvane-ipmi-bridge: 1 messages like the next were left out\n"
                  "talvane-ipmi-bridge: message\n");
}

TEST_F(LimitedLogTest, AfterALongTimeNoMoreThanTheFirstAreLoggedAgain) {
    LogAt(seconds(0), 3);
    LogAt(seconds(100000), 5);
    EXPECT_EQ(GetCapturedStderr(), Lines(6));
}

TEST_F(LimitedLogTest, DebugMessagesAreNotLimited) {
    bridge::LogEverything(true);
    for (int i = 0; i < 5; ++i) log.Log(Priority::kDebug, "message", start);
    LogAt(seconds(0), 1);
    EXPECT_EQ(GetCapturedStderr(), Lines(6));
}

TEST_F(LimitedLogTest, OfEqualFailuresInARowOnlyTheFirstIsLogged) {
    bridge::Outcomes outcomes{log};
    outcomes.Log("open", 0);
    for (int i = 0; i < 3; ++i) outcomes.Log("open", ENODEV);
    outcomes.Log("open", EACCES);
    outcomes.Log("open", 0);
    outcomes.Log("open", EACCES);
    EXPECT_EQ(GetCapturedStderr(),
              "talvane-ipmi-bridge: open: No such device\n"
              "talvane-ipmi-bridge: open: Permission denied\n"
              "talvane-ipmi-bridge: open: Permission denied\n");
}

TEST_F(LimitedLogTest, FailuresThatAlternateAreLimited) {
    bridge::Outcomes outcomes{log};
    for (int i = 0; i < 100; ++i) outcomes.Log("open", i % 2 == 0 ? ENODEV : EACCES);
    EXPECT_EQ(GetCapturedStderr(),
              "talvane-ipmi-bridge: open: No such device\n"
              "talvane-ipmi-bridge: open: Permission denied\n"
              "talvane-ipmi-bridge: open: No such device\n");
}

}  // namespace
