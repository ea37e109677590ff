// SPDX-License-Identifier: MIT
//
// IPMIbase: finding the controller, one request to it, and the bounded copy.

#include <array>
#include <memory>

#include "simulator/machine/Device.h"
#include "simulator/machine/IpmiDevice.h"
#include "simulator/machine/Machine.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TransportTest : public ::testing::Test {
protected:
    sim::SimulatedServer server;
};

TEST_F(TransportTest, NothingIsOpenedByTheConstructor) {
    IPMIbase base;
    EXPECT_EQ(base.IsInitOK(), 0);
    EXPECT_EQ(hDevice, -1);
    EXPECT_THAT(server.GetLog().Lines(), IsEmpty());
}

TEST_F(TransportTest, TheProbeFollowsTheOpenAndDropsThePrivilege) {
    server.GetBmc();
    IPMIbase base;
    EXPECT_EQ(base.InitIpmiBase(), 0);
    EXPECT_EQ(base.IsInitOK(), 1);
    EXPECT_EQ(base.IsSupportKCS, 1);
    EXPECT_EQ(base.IsSupportSMIC, 0);
    EXPECT_THAT(server.GetLog().Lines(),
                ElementsAre("open /dev/ipmi O_RDONLY -> ok", "iopl 3 -> 0", "in 0xCA3 1 -> 0x0",
                            "in 0xCAA 1 -> 0xFF", "iopl 0 -> 0"));
}

TEST_F(TransportTest, ASmicInterfaceAloneIsEnough) {
    server.GetMachine().GiveBmc(false, true);
    IPMIbase base;
    EXPECT_EQ(base.InitIpmiBase(), 0);
    EXPECT_EQ(base.IsSupportKCS, 0);
    EXPECT_EQ(base.IsSupportSMIC, 1);
    EXPECT_EQ(base.IsInitOK(), 1);
}

TEST_F(TransportTest, AnyStatusButAllOnesIsAnInterface) {
    server.GetMachine().GiveBmc(false, false);
    for (const int status : {0x00, 0x40, 0xFE}) {
        server.GetMachine().Ports().Install(
            0xCA3, 1, std::make_shared<sim::InterfaceRegister>(static_cast<std::uint8_t>(status)));
        InitOK = 0;
        IPMIbase base;
        EXPECT_EQ(base.InitIpmiBase(), 0);
        EXPECT_EQ(base.IsSupportKCS, 1) << status;
        EXPECT_EQ(base.IsInitOK(), 1) << status;
    }
}

TEST_F(TransportTest, WithoutAnInterfaceTheProbeSucceedsAndNothingIsReady) {
    server.GetMachine().GiveBmc(false, false);
    IPMIbase base;
    EXPECT_EQ(base.InitIpmiBase(), 0);
    EXPECT_EQ(base.IsInitOK(), 0);
    EXPECT_GE(hDevice, 0);
}

TEST_F(TransportTest, CallingTwiceOpensTheDeviceOnce) {
    server.GetBmc();
    IPMIbase base;
    EXPECT_EQ(base.InitIpmiBase(), 0);
    EXPECT_EQ(base.InitIpmiBase(), 0);
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
}

TEST_F(TransportTest, WhileNoInterfaceAnswersEveryCallOpensAgain) {
    server.GetMachine().GiveBmc(false, false);
    IPMIbase base;
    EXPECT_EQ(base.InitIpmiBase(), 0);
    EXPECT_EQ(base.InitIpmiBase(), 0);
    EXPECT_EQ(server.GetLog().Count("open"), 2u);
}

TEST_F(TransportTest, AMissingDeviceFails) {
    IPMIbase base;
    EXPECT_EQ(base.InitIpmiBase(), -1);
    EXPECT_EQ(hDevice, -1);
    EXPECT_EQ(base.IsInitOK(), 0);
    EXPECT_EQ(server.GetLog().Count("iopl"), 0u);
}

TEST_F(TransportTest, WithoutPortPrivilegeTheDeviceStaysOpen) {
    server.GetBmc();
    server.Fail("iopl", 1, EPERM);
    IPMIbase base;
    EXPECT_EQ(base.InitIpmiBase(), -1);
    EXPECT_GE(hDevice, 0);
    EXPECT_EQ(base.IsInitOK(), 0);
    EXPECT_EQ(server.GetLog().Count("in"), 0u);
    EXPECT_EQ(server.GetLog().Count("iopl"), 1u);
}

TEST_F(TransportTest, APrivilegeThatCannotBeDroppedDoesNotMatter) {
    server.GetBmc();
    server.Fail("iopl", 2, EPERM);
    IPMIbase base;
    EXPECT_EQ(base.InitIpmiBase(), 0);
    EXPECT_EQ(InitOK, 1);
    EXPECT_EQ(server.GetLog().Lines().back(), "iopl 0 -> -1 EPERM");
}

TEST_F(TransportTest, BeforeTheProbeARequestMakesNoSystemCall) {
    server.GetBmc();
    IPMIbase base;
    base.request.cmdType = 1;
    EXPECT_EQ(base.SendTimedImbpRequest(&base.request, 3000, base.ResponseBuffer, nullptr, nullptr),
              -1);
    EXPECT_THAT(server.GetLog().Lines(), IsEmpty());
}

TEST_F(TransportTest, ARequestIsHandedToTheDriverAsItStands) {
    sim::Bmc& bmc = server.GetBmc();
    bmc.Intercept([](const sim::BmcRequest&) { return sim::Bytes{0xAB, 0xCD}; });
    IPMIbase base;
    ASSERT_EQ(base.InitIpmiBase(), 0);

    std::array<unsigned char, 3> data{1, 2, 3};
    std::array<unsigned char, 8> response{};
    int length = 77;
    unsigned char completion = 88;
    IMBPREQUESTDATA request{0x2D, 0x20, 7, 4, 2, data.data(), 3};
    EXPECT_EQ(base.SendTimedImbpRequest(&request, 1234, response.data(), &length, &completion), 0);

    ASSERT_EQ(bmc.Requests().size(), 1u);
    const sim::BmcRequest& sent = bmc.Requests()[0];
    EXPECT_EQ(sent.command, 0x2D);
    EXPECT_EQ(sent.responder, 0xFF) << "whatever the request says";
    EXPECT_EQ(sent.bus, 7);
    EXPECT_EQ(sent.netFn, 4);
    EXPECT_EQ(sent.lun, 2);
    EXPECT_EQ(sent.timeout, 1234u);
    EXPECT_EQ(sent.data, (sim::Bytes{1, 2, 3}));
    EXPECT_EQ(response[0], 0xAB);
    EXPECT_EQ(response[1], 0xCD);
    EXPECT_EQ(length, 77) << "untouched";
    EXPECT_EQ(completion, 88) << "untouched";
    EXPECT_EQ(server.GetLog().Lines().back(), "ioctl /dev/ipmi 0xC0045301 -> 0");
}

TEST_F(TransportTest, ARefusedRequestAnswersWhatTheDriverAnswers) {
    server.GetBmc();
    IPMIbase base;
    ASSERT_EQ(base.InitIpmiBase(), 0);
    server.Fail("ioctl", 1, EIO);
    EXPECT_EQ(base.SendTimedImbpRequest(&base.request, 3000, base.ResponseBuffer, nullptr, nullptr),
              -1);
}

// A driver that answers every request with a number of its own.
class CountingDriver : public sim::Device {
public:
    static constexpr int kAnswer = 5;

    std::unique_ptr<sim::OpenFile> Open(int, int&) override { return std::make_unique<File>(); }

private:
    class File : public sim::OpenFile {
        sim::Answer Read(void*, std::size_t) override { return sim::Answer::Failed(EINVAL); }
        sim::Answer Seek(std::int64_t, int) override { return sim::Answer::Failed(EINVAL); }
        std::optional<sim::Answer> Ioctl(unsigned long, void*) override {
            return sim::Answer{kAnswer, 0};
        }
        std::uint64_t Position() const override { return 0; }
    };
};

TEST_F(TransportTest, AnyOtherAnswerOfTheDriverIsPassedOn) {
    server.GetBmc();
    server.GetMachine().Install("/dev/ipmi", std::make_unique<CountingDriver>());
    IPMIbase base;
    ASSERT_EQ(base.InitIpmiBase(), 0);
    EXPECT_EQ(base.SendTimedImbpRequest(&base.request, 3000, base.ResponseBuffer, nullptr, nullptr),
              CountingDriver::kAnswer);
}

TEST_F(TransportTest, OnlyTheObjectThatProbedKnowsTheInterface) {
    server.GetBmc();
    const IPMIsupport support;
    EXPECT_EQ(support.sensor.IsSupportKCS, 1);
    EXPECT_EQ(support.IsSupportKCS, 0);
    EXPECT_EQ(support.fru.IsSupportKCS, 0);
}

TEST_F(TransportTest, EachObjectClosesTheSharedDescriptorAndForgetsNothing) {
    server.GetBmc();
    int descriptor = -1;
    {
        IPMIsupport support;
        descriptor = hDevice;
        EXPECT_EQ(server.GetLog().Count("open"), 1u);
    }
    EXPECT_EQ(server.GetLog().Count("close"), 3u) << "the facade, its sensors and its inventory";
    EXPECT_EQ(hDevice, descriptor);
    EXPECT_EQ(InitOK, 1);
    const IPMIsupport second;
    EXPECT_EQ(server.GetLog().Count("open"), 1u) << "taken for open";
}

TEST_F(TransportTest, AnObjectThatOpenedNothingClosesNothing) {
    { const IPMIbase base; }
    EXPECT_EQ(server.GetLog().Count("close"), 0u);
}

// The bounded copy.

struct Copy {
    int result;
    std::string bytes;  // the first twenty of a buffer full of '#'
};

Copy CopyOf(const char* source, int size, int length) {
    IPMIbase base;
    std::string from(source);
    std::string to(20, '#');
    const int result = base.IpmiSrtringCopy(to.data(), from.data(), size, length);
    return {result, to};
}

constexpr const char* kTwenty = "abcdefghijklmnopqrst";

TEST(StringCopyTest, ALongerSourceIsCutToTheSpace) {
    const Copy copy = CopyOf(kTwenty, 16, 20);
    EXPECT_EQ(copy.result, 0);
    EXPECT_EQ(copy.bytes, std::string("abcdefghijklmno\0####", 20));
}

TEST(StringCopyTest, AShorterSourceIsTerminatedAfterItsLength) {
    EXPECT_EQ(CopyOf(kTwenty, 16, 5).bytes, std::string("abcde\0##############", 20));
}

TEST(StringCopyTest, ASourceAsLongAsTheSpaceLosesItsLastByte) {
    EXPECT_EQ(CopyOf(kTwenty, 16, 16).bytes, std::string("abcdefghijklmno\0####", 20));
}

TEST(StringCopyTest, ASourceThatEndsEarlierIsFilledUpWithZeros) {
    EXPECT_EQ(CopyOf("ab", 16, 5).bytes, std::string("ab\0\0\0\0##############", 20));
}

TEST(StringCopyTest, NoSpaceWritesNothing) {
    const Copy copy = CopyOf(kTwenty, 0, 5);
    EXPECT_EQ(copy.result, 0);
    EXPECT_EQ(copy.bytes, std::string(20, '#'));
}

TEST(StringCopyTest, SpaceForOneByteGetsTheTerminator) {
    const Copy copy = CopyOf(kTwenty, 1, 5);
    EXPECT_EQ(copy.result, 0);
    EXPECT_EQ(copy.bytes, std::string("\0###################", 20));
}

TEST(StringCopyTest, ANegativeLengthWritesNothing) {
    const Copy copy = CopyOf(kTwenty, 16, -1);
    EXPECT_EQ(copy.result, 0);
    EXPECT_EQ(copy.bytes, std::string(20, '#'));
}

TEST(StringCopyTest, NullPointersAreRefused) {
    IPMIbase base;
    char text[4] = "abc";
    EXPECT_EQ(base.IpmiSrtringCopy(nullptr, text, 4, 3), -1);
    EXPECT_EQ(base.IpmiSrtringCopy(text, nullptr, 4, 3), -1);
}

}  // namespace
