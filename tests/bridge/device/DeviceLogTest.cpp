// SPDX-License-Identifier: MIT
//
// What the journal gets of the callers' doings.

#include <algorithm>
#include <cerrno>
#include <string>

#include "bridge/Log.h"
#include "tests/bridge/device/Bridge.h"

namespace {

using ::testing::HasSubstr;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

constexpr std::uint8_t kChassis = 0x00;
constexpr std::uint8_t kChassisControl = 0x02;

class DeviceLogTest : public BridgeTest {
protected:
    DeviceLogTest() {
        connection.Release(Opened());  // after it, the start has been logged
        CaptureStderr();
    }

    // Of everything that was logged until the bridge has ended.
    std::string Logged() {
        EXPECT_EQ(Stop(), 0);
        return GetCapturedStderr();
    }
};

TEST_F(DeviceLogTest, ACommandThatChangesStateIsLoggedWithTheCallersProcessAndUser) {
    const std::uint64_t file = Opened();
    connection.process = 31415;
    connection.user = 1001;
    const Fetched off = Request(kMinute, kChassis, kChassisControl);
    EXPECT_EQ(connection.ReplyTo(connection.SendIoctl(file, off)).error, 0);
    EXPECT_EQ(Logged(),
              "talvane-ipmi-bridge: network function 0x00, command 0x02 for process 31415 of user "
              "1001\n");
}

TEST_F(DeviceLogTest, OpeningReadingAndClosingAreNotLogged) {
    const std::uint64_t file = Opened();
    EXPECT_EQ(Answer(file), 0);
    connection.Release(file);
    EXPECT_TRUE(kernel.WaitForOpenFiles(0));
    EXPECT_EQ(Logged(), "");
}

TEST_F(DeviceLogTest, WhenAskedForClosingIsLoggedWithWhatWasDone) {
    bridge::LogEverything(true);
    const std::uint64_t file = Opened();
    EXPECT_EQ(Answer(file), 0);
    connection.Release(file);
    EXPECT_TRUE(kernel.WaitForOpenFiles(0));
    EXPECT_THAT(Logged(), HasSubstr("closed after 1 requests, 1 messages to the BMC\n"));
    bridge::LogEverything(false);
}

TEST_F(DeviceLogTest, AnInterruptedRequestIsNoFailure) {
    const std::uint64_t file = Opened();
    kernel.SetAnswering(false);
    const std::uint64_t number = Ask(file);
    EXPECT_TRUE(kernel.WaitForMessages(1));
    connection.SendInterrupt(number);
    EXPECT_EQ(connection.ReplyTo(number).error, EINTR);
    EXPECT_EQ(Logged(), "");
}

// Files that come and go have one limit together.
TEST_F(DeviceLogTest, FailuresOfManyFilesAreLimited) {
    kernel.SetAnswering(false);
    for (int i = 0; i < 100; ++i) {
        const std::uint64_t file = Opened();
        EXPECT_EQ(Answer(file, 1), ETIMEDOUT);
        kernel.SetAnswering(true);
        connection.Release(file);
        kernel.SetAnswering(false);
    }
    const std::string logged = Logged();
    EXPECT_LE(std::count(logged.begin(), logged.end(), '\n'), 40);
    EXPECT_THAT(logged, HasSubstr("command 0x01: "));
}

}  // namespace
