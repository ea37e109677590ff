// SPDX-License-Identifier: MIT
//
// What the kernel passes for a caller of the device, and what the bridge replies.

#include <sys/socket.h>

#include <cerrno>
#include <string>

#include "tests/bridge/device/Bridge.h"
#include "tests/support/DescriptorLimit.h"

namespace {

using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;
using transport::Bytes;

class CharacterDeviceTest : public BridgeTest {
protected:
    // Of a reply that asks the kernel to fetch: words of 32 bits. The head has four words: result,
    // flags, number of areas to read, number of areas to write. Each area has an address and a
    // length of 64 bits.
    static std::uint32_t Word(const Bytes& body, std::size_t index) {
        std::uint32_t word = 0;
        for (std::size_t i = 4; i > 0 && 4 * index + i <= body.size(); --i)
            word = word << 8 | body[4 * index + i - 1];
        return word;
    }
};

TEST_F(CharacterDeviceTest, TheKernelLearnsTheNameOfTheDevice) {
    EXPECT_EQ(init.error, 0);
    EXPECT_THAT(std::string(init.body.begin(), init.body.end()), HasSubstr("DEVNAME=talvane-test"));
}

TEST_F(CharacterDeviceTest, AnIoctlFetchesTheRecordThenTheDataThenIsAnswered) {
    const std::uint64_t file = Opened();
    Fetched fetched = Request(kMinute);
    const Bytes record = [&] {
        Bytes bytes = fetched.call;
        bytes[9] = 0x30;  // data at 0x3000
        bytes[12] = 4;
        return bytes;
    }();

    const Reply first = connection.ReplyTo(connection.SendIoctl(file, {0x1000, {}, 0}));
    ASSERT_EQ(first.error, 0);
    ASSERT_THAT(first.body, SizeIs(16 + 16));
    EXPECT_EQ(Word(first.body, 2), 1U);
    EXPECT_EQ(Word(first.body, 4), 0x1000U);
    EXPECT_EQ(Word(first.body, 6), 32U);

    const Reply second = connection.ReplyTo(connection.SendIoctl(file, {0x1000, record, 0}));
    ASSERT_EQ(second.error, 0);
    ASSERT_THAT(second.body, SizeIs(16 + 4 * 16));
    EXPECT_EQ(Word(second.body, 2), 2U);
    EXPECT_EQ(Word(second.body, 3), 2U);
    EXPECT_EQ(Word(second.body, 8), 0x3000U);
    EXPECT_EQ(Word(second.body, 10), 4U);
    EXPECT_EQ(Word(second.body, 16), 0x2000U);
    EXPECT_EQ(Word(second.body, 18), 256U);

    fetched.call = record;
    fetched.call.resize(record.size() + 4);
    const Reply third = connection.ReplyTo(connection.SendIoctl(file, fetched));
    ASSERT_EQ(third.error, 0);
    ASSERT_THAT(third.body, SizeIs(16 + 32 + 1));
    EXPECT_EQ(third.body[16 + 24], 1);  // length of the response
    EXPECT_EQ(third.body[16 + 28], 0);  // completion code
    EXPECT_EQ(third.body[16 + 32], kGetDeviceId);
}

TEST_F(CharacterDeviceTest, AnIoctlWithoutDataFetchesTheRecordAlone) {
    const std::uint64_t file = Opened();
    Fetched fetched = Request(kMinute);
    fetched.room = 0;
    const Reply reply = connection.ReplyTo(connection.SendIoctl(file, fetched));
    ASSERT_EQ(reply.error, 0);
    EXPECT_EQ(Word(reply.body, 2), 1U) << "areas to read";
    EXPECT_EQ(Word(reply.body, 3), 2U) << "areas to write";
}

TEST_F(CharacterDeviceTest, AnotherIoctlAndACallerOf64BitsAreRefused) {
    const std::uint64_t file = Opened();
    Fetched fetched = Request(kMinute);
    fetched.command = 0xC0045302;
    EXPECT_EQ(connection.ReplyTo(connection.SendIoctl(file, fetched)).error, ENOTTY);
    fetched = Request(kMinute);
    fetched.callerHas32Bits = false;
    EXPECT_EQ(connection.ReplyTo(connection.SendIoctl(file, fetched)).error, ENOTTY);
    EXPECT_THAT(kernel.Messages(), SizeIs(0));
}

TEST_F(CharacterDeviceTest, ARecordThatIsNoRequestIsRefused) {
    const std::uint64_t file = Opened();
    const Fetched fetched = Request(kMinute, kApplication + 1);
    EXPECT_EQ(connection.ReplyTo(connection.SendIoctl(file, fetched)).error, EINVAL);
    EXPECT_THAT(kernel.Messages(), SizeIs(0));
}

TEST_F(CharacterDeviceTest, OpeningFailsAsTheKernelsDeviceDoes) {
    std::uint64_t file = 0;
    kernel.SetOpenError(ENOENT);
    EXPECT_EQ(connection.Open(file), ENODEV);
    kernel.SetOpenError(EACCES);
    EXPECT_EQ(connection.Open(file), EACCES);
    kernel.SetOpenError(0);
    EXPECT_EQ(connection.Open(file), 0);
}

TEST_F(CharacterDeviceTest, AClosedFileClosesTheKernelsDevice) {
    const std::uint64_t file = Opened();
    EXPECT_EQ(Answer(file), 0);
    EXPECT_EQ(kernel.OpenFiles(), 1U);
    connection.Release(file);
    EXPECT_TRUE(kernel.WaitForOpenFiles(0));
}

TEST_F(CharacterDeviceTest, AnOpenWhoseCallerIsGoneClosesTheKernelsDevice) {
    kernel.RefuseReply(ENOENT);
    (void)connection.SendOpen();
    (void)Opened();
    EXPECT_TRUE(kernel.WaitForOpenFiles(1)) << "the second";
}

TEST_F(CharacterDeviceTest, WithoutDescriptorsOpeningFailsAndLaterSucceeds) {
    if (kChecksNeedDescriptors) GTEST_SKIP() << "the sanitizer would end the program";
    std::uint64_t file = 0;
    {
        const DescriptorLimit none(0);
        EXPECT_EQ(connection.Open(file), EMFILE);
    }
    EXPECT_EQ(connection.Open(file), 0);
    EXPECT_EQ(Answer(file), 0);
}

TEST_F(CharacterDeviceTest, ARequestThatIsGoneWhenItIsReadIsSkipped) {
    const std::uint64_t file = Opened();
    for (const int error : {EAGAIN, EINTR}) {
        kernel.WithdrawRequest(error);
        (void)Ask(file);
        EXPECT_EQ(Answer(file), 0);
    }
    EXPECT_THAT(kernel.Messages(), SizeIs(2));
}

TEST_F(CharacterDeviceTest, ARequestWhoseInterruptCameFirstIsNotServed) {
    const std::uint64_t file = Opened();
    const std::uint64_t before = Ask(file);
    EXPECT_EQ(connection.ReplyTo(before).error, 0);
    const std::uint64_t next = before + 4;  // after the interrupt, whose number is 2 above
    connection.SendInterrupt(next);
    ASSERT_EQ(Ask(file), next);
    EXPECT_EQ(connection.ReplyTo(next).error, EINTR);
    EXPECT_THAT(kernel.Messages(), SizeIs(1));
}

TEST_F(CharacterDeviceTest, ASilentBmcCostsTheTimeOut) {
    const std::uint64_t file = Opened();
    kernel.SetAnswering(false);
    EXPECT_EQ(Answer(file, 20), ETIMEDOUT);
}

TEST_F(CharacterDeviceTest, ASignalEndsTheBridgeWithStatus0) {
    (void)Opened();
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(kernel.OpenFiles(), 0U);
}

TEST_F(CharacterDeviceTest, AWaitThatASignalInterruptsGoesOn) {
    kernel.FailPoll(EINTR);
    const std::uint64_t file = Opened();
    EXPECT_EQ(Answer(file), 0);
}

TEST_F(CharacterDeviceTest, AWaitThatFailsEndsTheBridge) {
    (void)Opened();  // after it, the start has been logged
    CaptureStderr();
    kernel.FailPoll(ENOMEM);
    (void)connection.SendOpen();
    EXPECT_EQ(Join(), 1);
    EXPECT_EQ(GetCapturedStderr(),
              "talvane-ipmi-bridge: /dev/talvane-test is gone: Cannot allocate memory\n");
}

TEST_F(CharacterDeviceTest, AKernelThatSpeaksAnotherLanguageEndsTheBridge) {
    (void)Opened();  // after it, the start has been logged
    CaptureStderr();
    ASSERT_EQ(send(kernel.Connection(), "?", 1, MSG_NOSIGNAL), 1);
    EXPECT_EQ(Join(), 1);
    EXPECT_EQ(GetCapturedStderr(),
              "talvane-ipmi-bridge: short read on fuse device\n"
              "talvane-ipmi-bridge: /dev/talvane-test is gone: Input/output error\n");
}

}  // namespace
