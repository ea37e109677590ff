// SPDX-License-Identifier: MIT
//
// /dev/ipmi within the process: what passes, what is refused, and where the bytes go.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "simulator/host/HostIpmi.h"
#include "tests/transport/FakeBmc.h"
#include "transport/ReadingCommands.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr unsigned long kSend = 0xC0045301;

// A request as a 32-bit program lays it out.
struct Record {
    std::uint8_t command = 0;
    std::uint8_t responder = 0x20;
    std::uint8_t bus = 0;
    std::uint8_t netFn = 0;
    std::uint8_t lun = 0;
    std::uint8_t padding[3] = {};
    const std::uint8_t* data = nullptr;
    std::uint32_t dataLength = 0;
    std::uint32_t timeout = 1000;
    std::uint8_t* response = nullptr;
    std::uint32_t responseLength = 0;
    std::uint8_t completion = 0xEE;
    std::uint8_t end[3] = {};
};
static_assert(sizeof(Record) == 32);

class HostIpmiTest : public testing::Test {
protected:
    // Hands every request to the fake controller, which the tests look at.
    class Forwarder : public transport::Controller {
    public:
        explicit Forwarder(FakeBmc& bmc) : bmc_(bmc) {}
        int Exchange(const transport::Request& request, transport::Deadline deadline,
                     transport::Response& response) override {
            return bmc_.Exchange(request, deadline, response);
        }

    private:
        FakeBmc& bmc_;
    };

    std::unique_ptr<sim::OpenFile> Open(bool mayChange) {
        device_ = std::make_unique<sim::HostIpmi>(
            [this](int&) { return std::make_unique<Forwarder>(bmc); }, mayChange);
        int error = 0;
        return device_->Open(0, error);
    }

    FakeBmc bmc;
    std::array<std::uint8_t, 300> response{};

private:
    std::unique_ptr<sim::HostIpmi> device_;
};

TEST_F(HostIpmiTest, ResponseIsStoredInTheCallersMemory) {
    const auto file = Open(false);
    Record record{.command = 0x01, .netFn = 0x06, .response = response.data()};
    const auto answer = file->Ioctl(kSend, &record);
    ASSERT_TRUE(answer.has_value());
    EXPECT_EQ(answer->error, 0);
    EXPECT_EQ(record.completion, 0);
    EXPECT_EQ(record.responseLength, 1u);
    EXPECT_EQ(response[0], 0xAB);
    EXPECT_EQ(response[1], 0) << "past the response";
}

TEST_F(HostIpmiTest, WholeRecordIsReadInPiecesUnderAReservation) {
    const auto file = Open(false);
    const std::array<std::uint8_t, 6> data = {0, 0, 0, 0, 0, 0xFF};
    Record record{.command = 0x23,
                  .netFn = 0x0A,
                  .data = data.data(),
                  .dataLength = data.size(),
                  .response = response.data()};
    EXPECT_EQ(file->Ioctl(kSend, &record)->error, 0);
    EXPECT_EQ(record.completion, 0);
    ASSERT_EQ(record.responseLength, 2 + bmc.record.size());
    EXPECT_EQ(std::memcmp(response.data() + 2, bmc.record.data(), bmc.record.size()), 0);
}

TEST_F(HostIpmiTest, CommandThatMayChangeTheControllerIsRefusedAndNamed) {
    const auto file = Open(false);
    Record record{.command = 0x24, .netFn = 0x06, .response = response.data()};
    testing::internal::CaptureStderr();
    EXPECT_EQ(file->Ioctl(kSend, &record)->error, 0);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("may change the BMC: network function 0x6, command 0x24"));
    EXPECT_EQ(record.completion, 0xD4);
    EXPECT_EQ(record.responseLength, 0u);
    EXPECT_THAT(bmc.requests, IsEmpty());
}

TEST_F(HostIpmiTest, CommandThatMayChangeTheControllerPassesWhereThatIsAsked) {
    const auto file = Open(true);
    Record record{.command = 0x24, .netFn = 0x06, .response = response.data()};
    EXPECT_EQ(file->Ioctl(kSend, &record)->error, 0);
    EXPECT_EQ(record.completion, 0);
    EXPECT_THAT(bmc.requests, SizeIs(1));
}

TEST_F(HostIpmiTest, ErrorOfTheWayToTheControllerIsThatOfTheCall) {
    const auto file = Open(false);
    bmc.error = ETIMEDOUT;
    Record record{.command = 0x01, .netFn = 0x06, .response = response.data()};
    EXPECT_EQ(file->Ioctl(kSend, &record)->error, ETIMEDOUT);
    EXPECT_EQ(record.completion, 0xEE) << "the record is untouched";
}

TEST_F(HostIpmiTest, NonsenseIsRefused) {
    const auto file = Open(false);
    EXPECT_EQ(file->Ioctl(kSend, nullptr)->error, EFAULT);
    Record record{.command = 0x01, .netFn = 0x06};
    EXPECT_EQ(file->Ioctl(kSend, &record)->error, EFAULT) << "no room for the response";
    record.response = response.data();
    record.dataLength = 273;
    EXPECT_EQ(file->Ioctl(kSend, &record)->error, EINVAL);
    EXPECT_FALSE(file->Ioctl(0x1234, &record).has_value()) << "the machine names it";
    EXPECT_THAT(bmc.requests, IsEmpty());
}

TEST_F(HostIpmiTest, DeviceCanNeitherBeReadNorSearched) {
    const auto file = Open(true);
    EXPECT_EQ(file->Read(response.data(), response.size()).error, EINVAL);
    EXPECT_EQ(file->Seek(0, SEEK_SET).error, ESPIPE);
    EXPECT_EQ(file->Position(), 0u);
    EXPECT_THAT(bmc.requests, IsEmpty());
}

TEST(HostIpmiOpenTest, FailsWithTheErrorOfTheConnection) {
    sim::HostIpmi device(
        [](int& error) {
            error = ENODEV;
            return std::unique_ptr<transport::Controller>();
        },
        false);
    int error = 0;
    EXPECT_EQ(device.Open(0, error), nullptr);
    EXPECT_EQ(error, ENODEV);
}

TEST(ReadingCommandsTest, EveryCommandThatTheLibrarysReportsUseOnlyReads) {
    EXPECT_TRUE(transport::OnlyReads(0x06, 0x01));
    EXPECT_TRUE(transport::OnlyReads(0x06, 0x25));
    EXPECT_TRUE(transport::OnlyReads(0x04, 0x2D));
    EXPECT_TRUE(transport::OnlyReads(0x04, 0x27));
    EXPECT_TRUE(transport::OnlyReads(0x0A, 0x11));
    EXPECT_TRUE(transport::OnlyReads(0x0A, 0x22));
    EXPECT_TRUE(transport::OnlyReads(0x0A, 0x23));
}

TEST(ReadingCommandsTest, SettersAndUnknownCommandsMayChange) {
    EXPECT_FALSE(transport::OnlyReads(0x06, 0x22)) << "Reset Watchdog Timer";
    EXPECT_FALSE(transport::OnlyReads(0x06, 0x24)) << "Set Watchdog Timer";
    EXPECT_FALSE(transport::OnlyReads(0x04, 0x26)) << "Set Sensor Thresholds";
    EXPECT_FALSE(transport::OnlyReads(0x00, 0x02)) << "Chassis Control";
    EXPECT_FALSE(transport::OnlyReads(0x06, 0x02)) << "Cold Reset";
    EXPECT_FALSE(transport::OnlyReads(0x0A, 0x12)) << "Write FRU Data";
    EXPECT_FALSE(transport::OnlyReads(0x2E, 0x01));
}

}  // namespace
