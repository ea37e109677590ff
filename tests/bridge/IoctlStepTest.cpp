// SPDX-License-Identifier: MIT
//
// The stages of an ioctl, told apart by what the kernel has passed.

#include <gmock/gmock.h>

#include <cerrno>
#include <random>
#include <vector>

#include "bridge/IoctlStep.h"
#include "transport/Message.h"

namespace {

using bridge::IoctlStage;
using bridge::IoctlStep;
using bridge::NextStep;
using Kind = bridge::IoctlStep::Kind;

constexpr std::size_t kRoom = transport::kRecordSize + transport::kMaxResponse;

// A request with four bytes of data, whose response goes to 0x2000.
transport::Bytes Record() {
    transport::Bytes record(transport::kRecordSize);
    record[0] = 0x2D;
    record[1] = 0xFF;
    record[3] = 0x04;
    record[9] = 0x10;
    record[12] = 4;
    record[21] = 0x20;
    return record;
}

TEST(IoctlStepTest, WithNothingPassedTheRecordIsFetched) {
    EXPECT_EQ(NextStep({transport::kSendMessage, true, {}, 0}).kind, Kind::kFetchRecord);
}

TEST(IoctlStepTest, WithTheRecordPassedItsDataAreFetched) {
    const transport::Bytes call = Record();
    const IoctlStep step = NextStep({transport::kSendMessage, true, call, 0});
    EXPECT_EQ(step.kind, Kind::kFetchData);
    EXPECT_EQ(step.record.dataAddress, 0x1000U);
    EXPECT_EQ(step.record.dataLength, 4U);
    EXPECT_EQ(step.record.responseAddress, 0x2000U);
}

TEST(IoctlStepTest, WithRecordAndDataPassedTheRequestIsServed) {
    transport::Bytes call = Record();
    call.resize(call.size() + 4);
    const IoctlStep step = NextStep({transport::kSendMessage, true, call, kRoom});
    EXPECT_EQ(step.kind, Kind::kServe);
    EXPECT_EQ(step.record.command, 0x2D);
}

void ExpectRefused(const IoctlStage& stage, int error) {
    const IoctlStep step = NextStep(stage);
    EXPECT_EQ(step.kind, Kind::kRefuse);
    EXPECT_EQ(step.error, error);
}

TEST(IoctlStepTest, OtherIoctlsAreRefusedAtEachStage) {
    const transport::Bytes call = Record();
    ExpectRefused({0xC0045302, true, {}, 0}, ENOTTY);
    ExpectRefused({0xC0045302, true, call, 0}, ENOTTY);
    ExpectRefused({0xC0045302, true, call, kRoom}, ENOTTY);
    ExpectRefused({0, true, {}, 0}, ENOTTY);
}

TEST(IoctlStepTest, CallersOf64BitsAreRefused) {
    ExpectRefused({transport::kSendMessage, false, {}, 0}, ENOTTY);
    ExpectRefused({transport::kSendMessage, false, Record(), 0}, ENOTTY);
}

TEST(IoctlStepTest, PartOfARecordIsRefused) {
    const transport::Bytes call(transport::kRecordSize - 1);
    ExpectRefused({transport::kSendMessage, true, call, 0}, EINVAL);
}

TEST(IoctlStepTest, AnInvalidRecordIsRefusedBeforeItsDataAreFetchedAndAfter) {
    transport::Bytes call = Record();
    call[3] = 0x05;
    ExpectRefused({transport::kSendMessage, true, call, 0}, EINVAL);
    ExpectRefused({transport::kSendMessage, true, call, kRoom}, EINVAL);
    call = Record();
    call[21] = 0;
    ExpectRefused({transport::kSendMessage, true, call, 0}, EFAULT);
}

// Whatever a caller's record holds, no more is fetched than the kernel's driver takes, and nothing
// from beyond a 32-bit program's memory.
TEST(IoctlStepTest, ArbitraryRecordsAreRefusedOrStayWithinTheBounds) {
    std::mt19937 random(20261);
    int fetched = 0;
    for (int i = 0; i < 200000; ++i) {
        transport::Bytes call(random() % 40);
        for (std::uint8_t& byte : call) byte = static_cast<std::uint8_t>(random());
        if (call.size() > 14 && i % 2 == 0) {  // let some pass
            call[1] = 0x20;
            call[2] = 0;
            call[3] &= 0x3E;
            call[4] &= 3;
            call[13] &= 1;
            call[14] = 0;
            if (call.size() > 15) call[15] = 0;
        }
        const IoctlStep step = NextStep({transport::kSendMessage, true, call, 0});
        if (step.kind != Kind::kFetchData) continue;
        ++fetched;
        ASSERT_LE(step.record.dataLength, transport::kMaxData);
        ASSERT_LE(std::uint64_t{step.record.dataAddress} + step.record.dataLength, 0xFFFFFFFFU);
        ASSERT_NE(step.record.responseAddress, 0U);
        ASSERT_GT(step.record.timeout.count(), 0);
        ASSERT_LE(step.record.timeout.count(), 60000);
    }
    EXPECT_GT(fetched, 1000);
}

}  // namespace
