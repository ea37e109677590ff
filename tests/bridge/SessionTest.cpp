// SPDX-License-Identifier: MIT
//
// From the caller's bytes to the bytes of its answer.

#include <gmock/gmock.h>

#include <cerrno>

#include "FakeBmc.h"
#include "bridge/CallerRecord.h"
#include "bridge/Session.h"

namespace {

using bridge::Bytes;
using ::testing::SizeIs;

// Get SDR, as a caller asks for a whole record: 32 bytes, then 6 of data.
Bytes Call() {
    Bytes call(bridge::kRecordSize, 0xEE);
    call[0] = 0x23;
    call[1] = 0xFF;
    call[2] = 0;
    call[3] = 0x0A;
    call[4] = 0;
    call[12] = 6;
    call[13] = call[14] = call[15] = 0;
    const Bytes data{0, 0, 7, 0, 0, 0xFF};
    call.insert(call.end(), data.begin(), data.end());
    return call;
}

class Session : public ::testing::Test {
protected:
    FakeBmc bmc;
    bridge::Reservation reservation;
    bridge::Session session{bmc, reservation};
    Bytes answer;
};

TEST_F(Session, TheAnswerIsTheRecordWithItsResultAndTheResponseBehindIt) {
    const Bytes call = Call();
    ASSERT_EQ(session.Serve(call, answer), 0);
    Bytes expected(call.begin(), call.begin() + 32);
    expected[24] = 66;  // 2 bytes of next record ID, 64 of record
    expected[25] = expected[26] = expected[27] = 0;
    expected[28] = 0;
    expected.insert(expected.end(), {0x34, 0x12});
    expected.insert(expected.end(), bmc.record.begin(), bmc.record.end());
    EXPECT_EQ(answer, expected);
    EXPECT_EQ(session.served(), 1U);
}

TEST_F(Session, ACompletionCodeStandsInItsFieldAndBringsNoBytes) {
    Bytes call = Call();
    call[0] = 0x77;
    ASSERT_EQ(session.Serve(call, answer), 0);
    EXPECT_THAT(answer, SizeIs(32));
    EXPECT_EQ(answer[24], 0);
    EXPECT_EQ(answer[28], 0xC1);
}

TEST_F(Session, RequestsReachTheBmcWithLunAndData) {
    Bytes call = Call();
    call[4] = 2;
    ASSERT_EQ(session.Serve(call, answer), 0);
    EXPECT_EQ(bmc.requests[0].netFn, 0x0A);
    EXPECT_EQ(bmc.requests[0].command, 0x23);
    EXPECT_EQ(bmc.requests[0].lun, 2);
    EXPECT_EQ(bmc.requests[0].data, (Bytes{0, 0, 7, 0, 0, 0xFF}));
}

TEST_F(Session, ResponsesAreCutToTheCallersRoom) {
    bmc.record = FakeBmc(260).record;
    bmc.room = 260;
    ASSERT_EQ(session.Serve(Call(), answer), 0);
    EXPECT_THAT(answer, SizeIs(32 + 256));
    EXPECT_EQ(answer[24], 0);
    EXPECT_EQ(answer[25], 1);
}

TEST_F(Session, WithoutAResponseTheErrnoIsTheAnswer) {
    bmc.error = ETIMEDOUT;
    EXPECT_EQ(session.Serve(Call(), answer), ETIMEDOUT);
    EXPECT_EQ(session.served(), 0U);
}

TEST_F(Session, NonsenseNeverReachesTheBmc) {
    Bytes call = Call();
    call[3] = 0x0B;
    EXPECT_EQ(session.Serve(call, answer), EINVAL);
    EXPECT_EQ(session.Serve(Bytes(31), answer), EINVAL);
    EXPECT_THAT(bmc.requests, SizeIs(0));
}

TEST_F(Session, ARecordThatChangedBetweenTwoLooksIsRefused) {
    Bytes call = Call();
    call.pop_back();
    EXPECT_EQ(session.Serve(call, answer), EINVAL);
    call = Call();
    call.push_back(0);
    EXPECT_EQ(session.Serve(call, answer), EINVAL);
    EXPECT_THAT(bmc.requests, SizeIs(0));
}

}  // namespace
