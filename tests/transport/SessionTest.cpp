// SPDX-License-Identifier: MIT
//
// From the caller's bytes to the bytes of its answer.

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <random>
#include <thread>

#include "tests/transport/FakeBmc.h"
#include "transport/CallerRecord.h"
#include "transport/Session.h"

namespace {

using ::testing::SizeIs;
using transport::Bytes;

// Get SDR, as a caller asks for a whole record: 32 bytes, then 6 of data.
Bytes Call() {
    Bytes call(transport::kRecordSize, 0xEE);
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

class SessionTest : public ::testing::Test {
protected:
    FakeBmc bmc;
    transport::Reservation reservation;
    transport::Session session{bmc, reservation};
    Bytes answer;
};

TEST_F(SessionTest, TheAnswerIsTheRecordWithItsResultThenTheResponse) {
    const Bytes call = Call();
    ASSERT_EQ(session.Serve(call, answer), 0);
    Bytes expected(call.begin(), call.begin() + 32);
    expected[24] = 66;  // 2 bytes of next record ID, 64 of record
    expected[25] = expected[26] = expected[27] = 0;
    expected[28] = 0;
    expected.insert(expected.end(), {0x34, 0x12});
    expected.insert(expected.end(), bmc.record.begin(), bmc.record.end());
    EXPECT_EQ(answer, expected);
    EXPECT_EQ(session.Served(), 1U);
}

TEST_F(SessionTest, ARefusedCommandAnswersItsCompletionCodeWithoutBytes) {
    Bytes call = Call();
    call[0] = 0x77;
    ASSERT_EQ(session.Serve(call, answer), 0);
    EXPECT_THAT(answer, SizeIs(32));
    EXPECT_EQ(answer[24], 0);
    EXPECT_EQ(answer[28], 0xC1);
}

TEST_F(SessionTest, RequestsReachTheBmcWithLunAndData) {
    Bytes call = Call();
    call[4] = 2;
    ASSERT_EQ(session.Serve(call, answer), 0);
    EXPECT_EQ(bmc.requests[0].netFn, 0x0A);
    EXPECT_EQ(bmc.requests[0].command, 0x23);
    EXPECT_EQ(bmc.requests[0].lun, 2);
    EXPECT_EQ(bmc.requests[0].data, (Bytes{0, 0, 7, 0, 0, 0xFF}));
}

TEST_F(SessionTest, ResponsesAreCutToTheCallersRoom) {
    bmc.record = FakeBmc(260).record;
    bmc.room = 260;
    ASSERT_EQ(session.Serve(Call(), answer), 0);
    EXPECT_THAT(answer, SizeIs(32 + 256));
    EXPECT_EQ(answer[24], 0);
    EXPECT_EQ(answer[25], 1);
}

TEST_F(SessionTest, WithoutAResponseServeReturnsTheErrno) {
    bmc.error = ETIMEDOUT;
    EXPECT_EQ(session.Serve(Call(), answer), ETIMEDOUT);
    EXPECT_EQ(session.Served(), 0U);
}

TEST_F(SessionTest, AnInvalidCallDoesNotReachTheBmc) {
    Bytes call = Call();
    call[3] = 0x0B;
    EXPECT_EQ(session.Serve(call, answer), EINVAL);
    EXPECT_EQ(session.Serve(Bytes(31), answer), EINVAL);
    EXPECT_THAT(bmc.requests, SizeIs(0));
}

TEST_F(SessionTest, ARecordThatChangedBetweenTwoReadsIsRefused) {
    Bytes call = Call();
    call.pop_back();
    EXPECT_EQ(session.Serve(call, answer), EINVAL);
    call = Call();
    call.push_back(0);
    EXPECT_EQ(session.Serve(call, answer), EINVAL);
    EXPECT_THAT(bmc.requests, SizeIs(0));
}

TEST_F(SessionTest, TheTimeOutIncludesTheWaitForAnotherRequest) {
    int error = 0;
    bmc.room = 255;
    bmc.beforeEach = [&](std::size_t) {
        std::thread([&] {
            Bytes call = Call();
            call[16] = 1;  // millisecond
            call[17] = call[18] = call[19] = 0;
            Bytes none;
            error = session.Serve(call, none);
        }).join();
    };
    EXPECT_EQ(session.Serve(Call(), answer), 0);
    EXPECT_EQ(error, ETIMEDOUT);
    EXPECT_THAT(bmc.requests, SizeIs(1));
}

// The deadline that reaches the BMC is the caller's time-out from now on.
TEST_F(SessionTest, TheDeadlineIsTheTimeOutOfTheRecordFromNow) {
    struct : transport::Controller {
        int Exchange(const transport::Request&, transport::Deadline until,
                     transport::Response&) override {
            deadline = until;
            return ETIMEDOUT;
        }
        transport::Deadline deadline;
    } silent;
    transport::Session waiting(silent, reservation);
    Bytes call = Call();
    call[16] = 0x10;
    call[17] = 0x27;  // 10 s
    call[18] = call[19] = 0;
    const auto before = transport::Deadline::clock::now();
    EXPECT_EQ(waiting.Serve(call, answer), ETIMEDOUT);
    EXPECT_GE(silent.deadline - before, std::chrono::seconds(10));
    EXPECT_LE(silent.deadline - transport::Deadline::clock::now(), std::chrono::seconds(10));
    const auto stated = before + std::chrono::seconds(3);
    EXPECT_EQ(waiting.Serve(call, answer, stated), ETIMEDOUT);
    EXPECT_EQ(silent.deadline, stated);
}

// Answers with the request's own data, and notes when requests overlap.
class Echo : public transport::Controller {
public:
    int Exchange(const transport::Request& request, transport::Deadline,
                 transport::Response& response) override {
        if (++inside != 1) overlap = true;
        std::this_thread::yield();
        response = {0x00, request.data};
        --inside;
        return 0;
    }
    std::atomic<int> inside = 0;
    std::atomic<bool> overlap = false;
};

TEST_F(SessionTest, CallersOfOneFileTakeTurnsAndGetTheirOwnAnswers) {
    Echo echo;
    transport::Session shared(echo, reservation);
    std::atomic<int> right = 0;
    const auto ask = [&](std::uint8_t mark) {
        Bytes call = Call();
        call[0] = 0x2D;
        call[3] = 0x04;
        call[19] = 0;  // time for all to have their turn
        std::fill(call.begin() + 32, call.end(), mark);
        for (int i = 0; i < 200; ++i) {
            Bytes own;
            if (shared.Serve(call, own) == 0 && own.size() == 32 + 6 &&
                std::all_of(own.begin() + 32, own.end(), [&](auto byte) { return byte == mark; }))
                ++right;
        }
    };
    std::vector<std::thread> callers;
    for (std::uint8_t mark = 1; mark <= 4; ++mark) callers.emplace_back(ask, mark);
    for (std::thread& caller : callers) caller.join();
    EXPECT_EQ(right, 4 * 200);
    EXPECT_FALSE(echo.overlap);
    EXPECT_EQ(shared.Served(), 4U * 200U);
}

// Whole records for several files at once, while a program beside them reserves the
// repository now and then.
TEST_F(SessionTest, FilesThatReadAtOnceAllGetWholeRecords) {
    bmc.beforeEach = [&](std::size_t number) {
        if (number % 50 == 0) ++bmc.reservation;
    };
    std::atomic<int> right = 0;
    const auto read = [&] {
        transport::Session own(bmc, reservation);
        for (int i = 0; i < 50; ++i) {
            Bytes whole;
            if (own.Serve(Call(), whole) == 0 && whole.size() == 32 + 2 + bmc.record.size() &&
                std::equal(bmc.record.begin(), bmc.record.end(), whole.begin() + 34))
                ++right;
        }
    };
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) readers.emplace_back(read);
    for (std::thread& reader : readers) reader.join();
    EXPECT_EQ(right, 4 * 50);
}

// Answers with arbitrary bytes to arbitrary calls.
class Noise : public transport::Controller {
public:
    int Exchange(const transport::Request&, transport::Deadline,
                 transport::Response& response) override {
        response.completion = random() % 4 == 0 ? 0xCA : 0x00;
        response.data.resize(random() % 271);
        for (std::uint8_t& byte : response.data) byte = static_cast<std::uint8_t>(random());
        return 0;
    }
    std::mt19937 random{51};
};

TEST_F(SessionTest, ArbitraryCallsAndResponsesStayWithinTheBuffers) {
    Noise noise;
    std::mt19937 random(52);
    int served = 0;
    for (int i = 0; i < 20000; ++i) {
        transport::Session own(noise, reservation);
        Bytes call = Call();
        call[0] = random() % 2 == 0 ? 0x23 : 0x11;
        call.resize(random() % 8 == 0 ? random() % 400 : 32 + (call[0] == 0x23 ? 6 : 4));
        if (call.size() > 32) call[12] = static_cast<std::uint8_t>(call.size() - 32);
        for (std::size_t at = 32; at < call.size(); ++at)
            call[at] = random() % 2 == 0 ? 0xFF : static_cast<std::uint8_t>(random());
        if (!call.empty() && random() % 4 == 0)
            call[random() % call.size()] = static_cast<std::uint8_t>(random());
        if (own.Serve(call, answer) != 0) continue;
        ++served;
        ASSERT_GE(answer.size(), 32U);
        ASSERT_LE(answer.size(), 32U + 256U);
        ASSERT_EQ(answer[24] + 256U * answer[25], answer.size() - 32);
    }
    EXPECT_GT(served, 5000);
}

}  // namespace
