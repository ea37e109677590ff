// SPDX-License-Identifier: MIT
//
// A BMC that does not answer: whom its callers keep waiting, and for how long.

#include <cerrno>
#include <vector>

#include "tests/bridge/device/Bridge.h"

namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::SizeIs;

// As README.md states them.
constexpr std::size_t kMaxFiles = 24;
constexpr std::size_t kMaxWaiting = 16;
constexpr std::size_t kMaxUnderWay = 4;

class BusyDeviceTest : public BridgeTest {
protected:
    BusyDeviceTest() : file(Opened()) { kernel.SetAnswering(false); }

    // Sends a request that the BMC gets and its caller gives up.
    void Abandon(std::uint64_t asked) {
        const std::size_t before = kernel.Messages().size();
        const std::uint64_t number = Ask(asked);
        ASSERT_TRUE(kernel.WaitForMessages(before + 1));
        connection.SendInterrupt(number);
        ASSERT_EQ(connection.ReplyTo(number).error, EINTR);
    }

    // Of requests with these numbers.
    std::vector<int> Errors(const std::vector<std::uint64_t>& numbers) {
        std::vector<int> errors;
        for (const std::uint64_t number : numbers)
            errors.push_back(connection.ReplyTo(number).error);
        return errors;
    }

    const std::uint64_t file;
};

TEST_F(BusyDeviceTest, AFileWithManyRequestsKeepsNobodyFromOpeningAndAsking) {
    const std::uint64_t first = Ask(file);
    for (int i = 0; i < 200; ++i) (void)Ask(file);
    const std::uint64_t other = Opened();
    (void)Ask(other);
    EXPECT_TRUE(kernel.WaitForMessages(2));
    EXPECT_FALSE(connection.HasReplyTo(first));
}

TEST_F(BusyDeviceTest, BeyondAFewWaitingRequestsAFileRefusesMore) {
    std::vector<std::uint64_t> numbers{Ask(file)};
    ASSERT_TRUE(kernel.WaitForMessages(1));
    for (std::size_t i = 0; i < kMaxWaiting; ++i) numbers.push_back(Ask(file));
    EXPECT_EQ(Answer(file), EBUSY);
    for (const std::uint64_t number : numbers) EXPECT_FALSE(connection.HasReplyTo(number));
    kernel.SetAnswering(true);
    EXPECT_THAT(Errors(numbers), Each(0));
}

TEST_F(BusyDeviceTest, TheTimeOutOfAWaitingRequestGoesOn) {
    const std::uint64_t first = Ask(file);
    ASSERT_TRUE(kernel.WaitForMessages(1));
    EXPECT_EQ(Answer(file, 20), ETIMEDOUT);
    EXPECT_FALSE(connection.HasReplyTo(first));
    EXPECT_THAT(kernel.Messages(), SizeIs(1));
}

TEST_F(BusyDeviceTest, AnInterruptedCallerReturnsAtOnceAndLeavesTheFileToOthers) {
    const std::uint64_t first = Ask(file);
    ASSERT_TRUE(kernel.WaitForMessages(1));
    const std::uint64_t second = Ask(file);
    connection.SendInterrupt(first);
    EXPECT_EQ(connection.ReplyTo(first).error, EINTR);
    EXPECT_TRUE(kernel.WaitForMessages(2));
    kernel.SetAnswering(true);
    EXPECT_EQ(connection.ReplyTo(second).error, 0);
}

TEST_F(BusyDeviceTest, AnInterruptedCallerThatWaitsReturnsAtOnceAndIsNotServed) {
    const std::uint64_t first = Ask(file);
    ASSERT_TRUE(kernel.WaitForMessages(1));
    const std::uint64_t second = Ask(file);
    connection.SendInterrupt(second);
    EXPECT_EQ(connection.ReplyTo(second).error, EINTR);
    EXPECT_FALSE(connection.HasReplyTo(first));
    kernel.SetAnswering(true);
    EXPECT_EQ(connection.ReplyTo(first).error, 0);
    EXPECT_EQ(Answer(file), 0);
    EXPECT_THAT(kernel.Messages(), SizeIs(2));
}

TEST_F(BusyDeviceTest, AnInterruptOfAnAnsweredRequestChangesNothing) {
    kernel.SetAnswering(true);
    const std::uint64_t number = Ask(file);
    EXPECT_EQ(connection.ReplyTo(number).error, 0);
    connection.SendInterrupt(number);
    EXPECT_EQ(Answer(file), 0);
}

TEST_F(BusyDeviceTest, AbandonedMessagesAreBoundedAndTheNextIsAnsweredAfterThem) {
    for (std::size_t i = 0; i < kMaxUnderWay; ++i) Abandon(file);
    EXPECT_EQ(Answer(file), EBUSY);
    EXPECT_THAT(kernel.Messages(), SizeIs(kMaxUnderWay));
    kernel.SetAnswering(true);
    EXPECT_EQ(Answer(file), 0);
}

TEST_F(BusyDeviceTest, OpenFilesAreBoundedBelowTheKernelsLimit) {
    std::uint64_t last = file;
    for (std::size_t i = 1; i < kMaxFiles; ++i) last = Opened();
    std::uint64_t none = 0;
    EXPECT_EQ(connection.Open(none), EBUSY);
    EXPECT_EQ(kernel.OpenFiles(), kMaxFiles);
    connection.Release(last);
    EXPECT_TRUE(kernel.WaitForOpenFiles(kMaxFiles - 1));
    EXPECT_EQ(connection.Open(last), 0);
}

// Whoever opens, asks, gives up and closes in a loop would otherwise fill the BMC's queue.
TEST_F(BusyDeviceTest, AClosedFileCountsUntilTheBmcHasAnsweredItsMessages) {
    Abandon(file);
    connection.Release(file);
    for (std::size_t i = 1; i < kMaxFiles; ++i) {
        const std::uint64_t next = Opened();
        Abandon(next);
        connection.Release(next);
    }
    std::uint64_t none = 0;
    EXPECT_EQ(connection.Open(none), EBUSY);
    EXPECT_THAT(kernel.Messages(), SizeIs(kMaxFiles));
    kernel.SetAnswering(true);
    EXPECT_TRUE(kernel.WaitForOpenFiles(0));
    EXPECT_EQ(connection.Open(none), 0);
}

TEST_F(BusyDeviceTest, ASignalWakesAllThatWait) {
    std::vector<std::uint64_t> numbers{Ask(file)};
    ASSERT_TRUE(kernel.WaitForMessages(1));
    for (int i = 0; i < 3; ++i) numbers.push_back(Ask(file));
    const std::uint64_t other = Opened();
    numbers.push_back(Ask(other));
    ASSERT_TRUE(kernel.WaitForMessages(2));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Stop(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(50));
    EXPECT_THAT(Errors(numbers), Each(ENOTCONN));
}

TEST_F(BusyDeviceTest, AConnectionThatBreaksOffIsAFailure) {
    kernel.BreakOff();
    EXPECT_EQ(Join(), 1);
}

TEST_F(BusyDeviceTest, AConnectionThatBreaksOffEndsRequestsUnderWay) {
    (void)Ask(file);
    ASSERT_TRUE(kernel.WaitForMessages(1));
    const auto start = std::chrono::steady_clock::now();
    kernel.BreakOff();
    EXPECT_EQ(Join(), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(50));
}

}  // namespace
