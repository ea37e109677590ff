// SPDX-License-Identifier: MIT
//
// The simulated driver's one request: what it carries to the controller and back, and what it
// refuses by itself.

#include <fcntl.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>

#include "simulator/machine/Machine.h"

namespace {

// As a 32-bit program lays it out.
struct Message {
    std::uint8_t command;
    std::uint8_t responder;
    std::uint8_t bus;
    std::uint8_t netFn;
    std::uint8_t lun;
    const std::uint8_t* data;
    unsigned length;
    unsigned timeout;
    std::uint8_t* response;
    unsigned responseLength;
    std::uint8_t completion;
};
static_assert(sizeof(Message) == 32);

class IpmiDeviceTest : public testing::Test {
protected:
    static constexpr unsigned long kSendMessage = 0xC0045301;

    // The error of the driver's call; 0 for none.
    int Send(Message& message) {
        const int descriptor = static_cast<int>(machine.Open({}, "/dev/ipmi", O_RDONLY)->value);
        const auto answer = machine.Ioctl({}, descriptor, kSendMessage, &message);
        return answer->Ok() ? 0 : answer->error;
    }
    Message GetReading(unsigned length) {
        return {0x2D, 0x20, 0, 4, 0, data.data(), length, 3000, response.data(), 0, 0xEE};
    }

    sim::Machine machine;
    sim::Bmc& bmc = machine.GetBmc();
    std::array<std::uint8_t, 300> data{0x30};
    std::array<std::uint8_t, 256> response{};
};

TEST_F(IpmiDeviceTest, RequestReturnsResponseLengthAndCompletionCode) {
    bmc.SetReading(0x30, 70);
    Message message = GetReading(1);
    EXPECT_EQ(Send(message), 0);
    EXPECT_EQ(response[0], 70);
    EXPECT_EQ(message.responseLength, 4u);
    EXPECT_EQ(message.completion, 0);

    data[0] = 0x31;
    EXPECT_EQ(Send(message), 0);
    EXPECT_EQ(message.responseLength, 0u);
    EXPECT_EQ(message.completion, 0xCB) << "no such sensor";
}

TEST_F(IpmiDeviceTest, DataLongerThanAnyMessageIsRefused) {
    Message message = GetReading(256);
    EXPECT_EQ(Send(message), 0);
    for (const unsigned length : {257u, 0x80000000u, 0xFFFFFFFFu}) {
        message = GetReading(length);
        EXPECT_EQ(Send(message), EINVAL) << length;
    }
    EXPECT_EQ(bmc.Requests().size(), 1u);
}

TEST_F(IpmiDeviceTest, NullPointerToDataOrResponseIsRefused) {
    bmc.SetReading(0x30, 70);
    Message message = GetReading(1);
    message.data = nullptr;
    EXPECT_EQ(Send(message), EFAULT);
    message = GetReading(1);
    message.response = nullptr;
    EXPECT_EQ(Send(message), EFAULT);
}

TEST_F(IpmiDeviceTest, MissingMessageIsRefused) {
    const int descriptor = static_cast<int>(machine.Open({}, "/dev/ipmi", O_RDONLY)->value);
    EXPECT_EQ(machine.Ioctl({}, descriptor, kSendMessage, nullptr)->error, EFAULT);
    EXPECT_TRUE(bmc.Requests().empty());
}

TEST_F(IpmiDeviceTest, OtherRequestEndsTheProcess) {
    const int descriptor = static_cast<int>(machine.Open({}, "/dev/ipmi", O_RDONLY)->value);
    Message message = GetReading(1);
    EXPECT_DEATH((void)machine.Ioctl({}, descriptor, 0x30D, &message),
                 "the program asked for ioctl\\(\"/dev/ipmi\", 0x30D\\), which this machine does "
                 "not have");
}

TEST_F(IpmiDeviceTest, ErrorOfTheDriverLeavesTheMessageUntouched) {
    bmc.Inject("Get Sensor Reading", sim::BmcFault::Kind::kFails, EBUSY, 1);
    Message message = GetReading(1);
    EXPECT_EQ(Send(message), EBUSY);
    EXPECT_EQ(message.responseLength, 0u);
    EXPECT_EQ(message.completion, 0xEE);
}

TEST_F(IpmiDeviceTest, DriverCanNeitherBeReadNorSearched) {
    const int descriptor = static_cast<int>(machine.Open({}, "/dev/ipmi", O_RDONLY)->value);
    char byte = 'b';
    EXPECT_EQ(machine.Read({}, descriptor, &byte, 1)->error, EINVAL);
    EXPECT_EQ(byte, 'b');
    EXPECT_EQ(machine.Seek({}, descriptor, 0, SEEK_SET)->error, ESPIPE);
    EXPECT_EQ(machine.GetLog().Lines()[1], "read /dev/ipmi 0x0 1 -> -1 EINVAL");
}

TEST_F(IpmiDeviceTest, SystemInterfaceStaysIdleWhateverIsWrittenToIt) {
    (void)machine.SetPrivilege(3);
    machine.PortOut(0xCA3, 1, 0x61);
    EXPECT_EQ(machine.PortIn(0xCA3, 1), 0u);
    machine.PortOut(0xCAA, 1, 0x61);
    EXPECT_EQ(machine.PortIn(0xCAA, 1), 0xFFu) << "it has no SMIC interface";
}

}  // namespace
