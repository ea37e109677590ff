// SPDX-License-Identifier: MIT
//
// The caller's 32-byte record: every field from its offset, and what is refused.

#include <gmock/gmock.h>

#include <array>
#include <cerrno>

#include "transport/CallerRecord.h"

namespace {

using std::chrono::milliseconds;

// A request as the library's code writes it, each field different from its neighbours.
std::array<std::uint8_t, transport::kRecordSize> BytesOfACall() {
    return {
        0x23, 0xFF, 0x00, 0x0A,
        0x02, 0xEE, 0xEE, 0xEE,  // command, responder, bus, network function
        0x11, 0x22, 0x33, 0x44,
        0x06, 0x00, 0x00, 0x00,  // data
        0xB8, 0x0B, 0x00, 0x00,
        0x55, 0x66, 0x77, 0x88,  // time-out, response
        0xDE, 0xAD, 0xBE, 0xEF,
        0x99, 0xEE, 0xEE, 0xEE,  // not set by callers
    };
}

int Decode(const std::array<std::uint8_t, transport::kRecordSize>& bytes) {
    transport::CallerRecord record;
    return transport::DecodeRecord(bytes, record);
}

int DecodeWith(std::size_t at, std::uint8_t value) {
    auto bytes = BytesOfACall();
    bytes[at] = value;
    return Decode(bytes);
}

TEST(CallerRecordTest, EveryFieldIsReadFromItsOffset) {
    transport::CallerRecord record;
    ASSERT_EQ(transport::DecodeRecord(BytesOfACall(), record), 0);
    EXPECT_EQ(record.command, 0x23);
    EXPECT_EQ(record.netFn, 0x0A);
    EXPECT_EQ(record.lun, 2);
    EXPECT_EQ(record.dataAddress, 0x44332211U);
    EXPECT_EQ(record.dataLength, 6U);
    EXPECT_EQ(record.timeout, milliseconds(3000));
    EXPECT_EQ(record.responseAddress, 0x88776655U);
}

TEST(CallerRecordTest, RespondersOtherThanTheBmcAreRefused) {
    EXPECT_EQ(DecodeWith(1, 0x20), 0);
    EXPECT_EQ(DecodeWith(1, 0xFF), 0);
    EXPECT_EQ(DecodeWith(1, 0x22), EINVAL);
    EXPECT_EQ(DecodeWith(1, 0x00), EINVAL);
}

TEST(CallerRecordTest, ABusOtherThanThePublicOneIsRefused) {
    EXPECT_EQ(DecodeWith(2, 1), EINVAL);
}

TEST(CallerRecordTest, NetworkFunctionsOfResponsesAndBeyondSixBitsAreRefused) {
    EXPECT_EQ(DecodeWith(3, 0x00), 0);
    EXPECT_EQ(DecodeWith(3, 0x0B), EINVAL);
    EXPECT_EQ(DecodeWith(3, 0x3E), 0);
    EXPECT_EQ(DecodeWith(3, 0x3F), EINVAL);
    EXPECT_EQ(DecodeWith(3, 0x40), EINVAL);
}

TEST(CallerRecordTest, ALunAboveThreeIsRefused) {
    EXPECT_EQ(DecodeWith(4, 3), 0);
    EXPECT_EQ(DecodeWith(4, 4), EINVAL);
}

TEST(CallerRecordTest, MoreDataThanTheKernelTakesAreRefused) {
    auto bytes = BytesOfACall();
    bytes[12] = 0x10;
    bytes[13] = 0x01;
    EXPECT_EQ(Decode(bytes), 0);
    bytes[12] = 0x11;
    EXPECT_EQ(Decode(bytes), EINVAL);
    bytes[12] = 0x10;
    bytes[15] = 0x80;  // "negative"
    EXPECT_EQ(Decode(bytes), EINVAL);
}

TEST(CallerRecordTest, DataWithoutAnAddressAreAFault) {
    auto bytes = BytesOfACall();
    for (std::size_t at = 8; at < 12; ++at) bytes[at] = 0;
    EXPECT_EQ(Decode(bytes), EFAULT);
    bytes[12] = 0;  // no data need no address
    EXPECT_EQ(Decode(bytes), 0);
}

TEST(CallerRecordTest, DataBeyondTheLastAddressAreAFault) {
    auto bytes = BytesOfACall();
    for (std::size_t at = 8; at < 12; ++at) bytes[at] = 0xFF;
    bytes[8] = 0xF9;
    EXPECT_EQ(Decode(bytes), 0);
    bytes[8] = 0xFA;
    EXPECT_EQ(Decode(bytes), EFAULT);
}

TEST(CallerRecordTest, AResponseWithoutAnAddressIsAFault) {
    auto bytes = BytesOfACall();
    for (std::size_t at = 20; at < 24; ++at) bytes[at] = 0;
    EXPECT_EQ(Decode(bytes), EFAULT);
}

TEST(CallerRecordTest, ATimeOutOfZeroBecomesFiveSecondsAndALongOneAMinute) {
    auto bytes = BytesOfACall();
    transport::CallerRecord record;
    bytes[16] = bytes[17] = 0;
    ASSERT_EQ(transport::DecodeRecord(bytes, record), 0);
    EXPECT_EQ(record.timeout, milliseconds(5000));
    bytes[19] = 0xFF;
    ASSERT_EQ(transport::DecodeRecord(bytes, record), 0);
    EXPECT_EQ(record.timeout, milliseconds(60000));
    bytes[16] = 1;
    bytes[19] = 0;
    ASSERT_EQ(transport::DecodeRecord(bytes, record), 0);
    EXPECT_EQ(record.timeout, milliseconds(1));
}

TEST(CallerRecordTest, StoringAResultChangesOnlyLengthAndCompletionCode) {
    auto expected = BytesOfACall();
    expected[24] = 0x02;
    expected[25] = 0x01;
    expected[26] = expected[27] = 0;
    expected[28] = 0xC1;
    auto bytes = BytesOfACall();
    transport::StoreResult(bytes, 0xC1, 0x102);
    EXPECT_EQ(bytes, expected);
}

}  // namespace
