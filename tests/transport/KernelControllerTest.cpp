// SPDX-License-Identifier: MIT
//
// The way to the kernel's device: what is sent, which response is taken, and what happens when the
// BMC is silent or the device goes.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/ipmi.h>

#include <cerrno>

#include "tests/transport/FakeKernelDevice.h"
#include "transport/KernelController.h"

namespace {

using std::chrono::milliseconds;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Gt;
using ::testing::Le;
using ::testing::SizeIs;
using transport::Bytes;
using transport::Deadline;
using transport::Request;
using transport::Response;
using Sent = FakeKernelDevice::Sent;

constexpr int kResponseType = IPMI_RESPONSE_RECV_TYPE;

const Request kReading{0x04, 1, 0x2D, {0x30}};

Deadline In(milliseconds time) {
    return Deadline::clock::now() + time;
}

class KernelControllerTest : public ::testing::Test {
protected:
    int Ask() { return Ask(kernel); }
    int Ask(transport::KernelController& controller) {
        return controller.Exchange(kReading, In(milliseconds(3000)), response);
    }
    // Answers the request with these data, completion code first.
    void AnswerWith(const Bytes& data) {
        device.onSend = [this, data](const Sent& sent) {
            device.Queue(sent.file, {kResponseType, sent.id, data});
        };
    }
    void BeSilent() {
        device.onSend = [](const Sent&) {};
    }

    FakeKernelDevice device;
    transport::KernelController kernel{FakeKernelDevice::kPath};
    Response response;
};

TEST_F(KernelControllerTest, ARequestGoesToTheBmcOfTheSystemInterface) {
    ASSERT_EQ(Ask(), 0);
    ASSERT_THAT(device.sent, SizeIs(1));
    const Sent& sent = device.sent[0];
    EXPECT_EQ(sent.addressType, IPMI_SYSTEM_INTERFACE_ADDR_TYPE);
    EXPECT_EQ(sent.channel, IPMI_BMC_CHANNEL);
    EXPECT_EQ(sent.request.netFn, 0x04);
    EXPECT_EQ(sent.request.lun, 1);
    EXPECT_EQ(sent.request.command, 0x2D);
    EXPECT_EQ(sent.request.data, Bytes{0x30});
    EXPECT_EQ(kernel.Sent(), 1U);
}

TEST_F(KernelControllerTest, TwoRequestsUseOneFileThatStartedProgramsDoNotInherit) {
    ASSERT_EQ(Ask(), 0);
    ASSERT_EQ(Ask(), 0);
    EXPECT_EQ(device.sent[0].file, device.sent[1].file);
    EXPECT_EQ(device.flags & O_ACCMODE, O_RDWR);
    EXPECT_NE(device.flags & O_CLOEXEC, 0);
}

TEST_F(KernelControllerTest, TheCompletionCodeIsNotAmongTheData) {
    AnswerWith({0xC1, 1, 2, 3});
    ASSERT_EQ(Ask(), 0);
    EXPECT_EQ(response.completion, 0xC1);
    EXPECT_THAT(response.data, ElementsAre(1, 2, 3));
}

TEST_F(KernelControllerTest, ACompletionCodeAloneIsAResponse) {
    response.data = {7};
    AnswerWith({0xC3});
    ASSERT_EQ(Ask(), 0);
    EXPECT_EQ(response.completion, 0xC3);
    EXPECT_THAT(response.data, SizeIs(0));
}

TEST_F(KernelControllerTest, AResponseWithoutACompletionCodeIsAnError) {
    AnswerWith({});
    EXPECT_EQ(Ask(), EBADMSG);
}

TEST_F(KernelControllerTest, AResponseBeyondTheLongestMessageIsCut) {
    AnswerWith(Bytes(IPMI_MAX_MSG_LENGTH + 10));
    ASSERT_EQ(Ask(), 0);
    EXPECT_THAT(response.data, SizeIs(IPMI_MAX_MSG_LENGTH - 1));
}

TEST_F(KernelControllerTest, ASilentBmcIsWaitedForUntilTheDeadlineAndNoLonger) {
    BeSilent();
    EXPECT_EQ(Ask(), ETIMEDOUT);
    EXPECT_THAT(device.waits, ElementsAre(AllOf(Gt(2000), Le(3000))));
    EXPECT_EQ(kernel.Exchange(kReading, In(milliseconds(-1)), response), ETIMEDOUT);
    EXPECT_EQ(device.waits.back(), 0);
}

TEST_F(KernelControllerTest, TheLateResponseOfAnotherRequestIsNeverTaken) {
    BeSilent();
    ASSERT_EQ(Ask(), ETIMEDOUT);
    const Sent late = device.sent[0];
    // It comes while the next request is waited for, before that one's own.
    device.onSend = [&](const Sent& sent) {
        device.Queue(sent.file, {kResponseType, late.id, {0x00, 0x11}});
        device.Queue(sent.file, {kResponseType, sent.id, {0x00, 0x22}});
    };
    ASSERT_EQ(Ask(), 0);
    EXPECT_THAT(response.data, ElementsAre(0x22));
}

TEST_F(KernelControllerTest, ALateResponseAloneDoesNotEndTheWait) {
    BeSilent();
    ASSERT_EQ(Ask(), ETIMEDOUT);
    const Sent late = device.sent[0];
    device.onSend = [&](const Sent& sent) {
        device.Queue(sent.file, {kResponseType, late.id, {0x00, 0x11}});
    };
    EXPECT_EQ(Ask(), ETIMEDOUT);
    EXPECT_THAT(device.waits, SizeIs(3));
}

TEST_F(KernelControllerTest, AnEventIsSkippedAndTheResponseTaken) {
    device.onSend = [&](const Sent& sent) {
        device.Queue(sent.file, {IPMI_ASYNC_EVENT_RECV_TYPE, sent.id, {0x00, 0x11}});
        device.Queue(sent.file, {kResponseType, sent.id, {0x00, 0x22}});
    };
    ASSERT_EQ(Ask(), 0);
    EXPECT_THAT(response.data, ElementsAre(0x22));
}

// Other programs wait while the BMC works such requests off.
TEST_F(KernelControllerTest, RequestsThatWereGivenUpAreBoundedUntilTheirResponsesCome) {
    BeSilent();
    for (unsigned i = 0; i < transport::kMaxUnderWay; ++i) ASSERT_EQ(Ask(), ETIMEDOUT);
    EXPECT_EQ(Ask(), EBUSY);
    EXPECT_THAT(device.sent, SizeIs(transport::kMaxUnderWay));
    device.Queue(device.sent[0].file, {kResponseType, device.sent[0].id, {0x00, 0x11}});
    EXPECT_EQ(Ask(), ETIMEDOUT);
    EXPECT_EQ(Ask(), EBUSY);
}

TEST_F(KernelControllerTest, AnEventIsNotTakenForTheResponseToARequestThatWasGivenUp) {
    BeSilent();
    for (unsigned i = 0; i < transport::kMaxUnderWay; ++i) ASSERT_EQ(Ask(), ETIMEDOUT);
    device.Queue(device.sent[0].file, {IPMI_ASYNC_EVENT_RECV_TYPE, 0, {0x00, 0x11}});
    EXPECT_EQ(Ask(), EBUSY);
}

TEST_F(KernelControllerTest, ADeviceThatCameBackHasNoRequestsUnderWay) {
    BeSilent();
    for (unsigned i = 0; i < transport::kMaxUnderWay; ++i) ASSERT_EQ(Ask(), ETIMEDOUT);
    device.Disappear();
    device.ComeBack();
    AnswerWith({0x00, 0x22});
    EXPECT_EQ(Ask(), 0);
}

TEST_F(KernelControllerTest, WorkingOffTakesTheResponsesToRequestsThatWereGivenUp) {
    BeSilent();
    ASSERT_EQ(Ask(), ETIMEDOUT);
    ASSERT_EQ(Ask(), ETIMEDOUT);
    device.waits.clear();
    int next = 0;
    device.onWait = [&] {
        const Sent& sent = device.sent.at(static_cast<std::size_t>(next++));
        device.Queue(sent.file, {kResponseType, sent.id, {0x00, 0x11}});
    };
    kernel.WorkOff(In(milliseconds(3000)));
    EXPECT_THAT(device.waits, SizeIs(2));
    kernel.WorkOff(In(milliseconds(3000)));
    EXPECT_THAT(device.waits, SizeIs(2));
}

TEST_F(KernelControllerTest, WorkingOffEndsWithTheDeadline) {
    BeSilent();
    ASSERT_EQ(Ask(), ETIMEDOUT);
    device.waits.clear();
    kernel.WorkOff(In(milliseconds(3000)));
    EXPECT_THAT(device.waits, ElementsAre(AllOf(Gt(2000), Le(3000))));
}

TEST_F(KernelControllerTest, ACancelledRequestEndsAtOnceAndIsNotSent) {
    transport::Flag cancelled;
    transport::KernelController own{FakeKernelDevice::kPath, &cancelled};
    cancelled.Raise();
    EXPECT_EQ(Ask(own), ECANCELED);
    EXPECT_THAT(device.sent, SizeIs(0));
    cancelled.Lower();
    EXPECT_EQ(Ask(own), 0);
}

TEST_F(KernelControllerTest, ARequestIsCancelledWhileItIsWaitedFor) {
    transport::Flag cancelled;
    transport::KernelController own{FakeKernelDevice::kPath, &cancelled};
    device.onSend = [&](const Sent&) { cancelled.Raise(); };
    EXPECT_EQ(Ask(own), ECANCELED);
    EXPECT_THAT(device.sent, SizeIs(1));
    cancelled.Lower();
    AnswerWith({0x00, 0x22});
    EXPECT_EQ(Ask(own), 0);
    EXPECT_THAT(response.data, ElementsAre(0x22));
}

// The kernel counts a response as under way until it is taken.
TEST_F(KernelControllerTest, LateResponsesAreDroppedSoThatTheKernelTakesMoreRequests) {
    device.limit = 3;
    BeSilent();
    for (int i = 0; i < 3; ++i) ASSERT_EQ(Ask(), ETIMEDOUT);
    EXPECT_EQ(Ask(), EBUSY);
    const std::vector<Sent> late = device.sent;
    for (const Sent& sent : late) device.Queue(sent.file, {kResponseType, sent.id, {0x00, 0x11}});
    AnswerWith({0x00, 0x22});
    ASSERT_EQ(Ask(), 0);
    EXPECT_THAT(response.data, ElementsAre(0x22));
}

TEST_F(KernelControllerTest, AWaitThatASignalInterruptsGoesOn) {
    device.pollError = EINTR;
    EXPECT_EQ(Ask(), 0);
    device.pollError = ENOMEM;
    EXPECT_EQ(Ask(), ENOMEM);
}

TEST_F(KernelControllerTest, EachControllerHasAQueueOfItsOwn) {
    transport::KernelController other{FakeKernelDevice::kPath};
    device.onSend = [&](const Sent& sent) {
        const auto mark = static_cast<std::uint8_t>(sent.file);
        device.Queue(sent.file, {kResponseType, sent.id, {0x00, mark}});
    };
    ASSERT_EQ(Ask(), 0);
    const Bytes first = response.data;
    ASSERT_EQ(Ask(other), 0);
    EXPECT_NE(device.sent[0].file, device.sent[1].file);
    EXPECT_NE(response.data, first);
}

TEST_F(KernelControllerTest, AMissingDeviceFileOrInterfaceIsAMissingDevice) {
    device.openError = ENOENT;
    EXPECT_EQ(kernel.Open(), ENODEV);
    EXPECT_EQ(Ask(), ENODEV);
    device.openError = ENXIO;
    EXPECT_EQ(Ask(), ENODEV);
    device.openError = EACCES;
    EXPECT_EQ(Ask(), EACCES);
    device.openError = 0;
    EXPECT_EQ(Ask(), 0);
}

TEST_F(KernelControllerTest, ADeviceThatGoesIsReportedAndItsFileClosed) {
    ASSERT_EQ(Ask(), 0);
    device.Disappear();
    EXPECT_EQ(Ask(), ENODEV);
    EXPECT_EQ(device.OpenFiles(), 0U);
    EXPECT_EQ(Ask(), ENODEV);
}

TEST_F(KernelControllerTest, ADeviceThatCameBackIsOpenedAgainForTheSameRequest) {
    ASSERT_EQ(Ask(), 0);
    device.Disappear();
    device.ComeBack();
    EXPECT_EQ(Ask(), 0);
    ASSERT_THAT(device.sent, SizeIs(2));
    EXPECT_NE(device.sent[0].file, device.sent[1].file);
    EXPECT_EQ(device.OpenFiles(), 1U);
}

TEST_F(KernelControllerTest, ADeviceThatGoesDuringTheWaitIsReported) {
    device.onSend = [&](const Sent& sent) {
        device.Queue(sent.file, {kResponseType, sent.id, {0x00}});
        device.Disappear();
    };
    EXPECT_EQ(Ask(), ENODEV);
    EXPECT_EQ(device.OpenFiles(), 0U);
    device.ComeBack();
    AnswerWith({0x00, 0x22});
    EXPECT_EQ(Ask(), 0);
}

TEST_F(KernelControllerTest, ADeviceThatRefusesTwiceIsNotTriedForEver) {
    ASSERT_EQ(Ask(), 0);
    device.sendError = EIO;
    EXPECT_EQ(Ask(), EIO);
}

// What the kernel refuses is the caller's matter, and no reason to leave the file.
TEST_F(KernelControllerTest, ARefusedRequestLeavesTheFileOpen) {
    ASSERT_EQ(Ask(), 0);
    device.sendError = EINVAL;
    EXPECT_EQ(Ask(), EINVAL);
    EXPECT_EQ(device.OpenFiles(), 1U);
    EXPECT_EQ(kernel.Sent(), 1U);
}

}  // namespace
