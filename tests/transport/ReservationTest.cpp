// SPDX-License-Identifier: MIT
//
// The one reservation of the repository: who asks for it, and when it is asked for again.

#include <gmock/gmock.h>

#include <cerrno>
#include <thread>

#include "tests/transport/FakeBmc.h"
#include "transport/Reservation.h"

namespace {

using ::testing::SizeIs;

class ReservationTest : public ::testing::Test {
protected:
    std::uint16_t Get() {
        std::uint16_t id = 0;
        EXPECT_EQ(reservation.Get(bmc, transport::Deadline::max(), id), 0);
        return id;
    }

    FakeBmc bmc;
    transport::Reservation reservation;
};

TEST_F(ReservationTest, ASecondGetReturnsTheSameWithoutARequest) {
    EXPECT_EQ(Get(), 0x0101);
    EXPECT_EQ(Get(), 0x0101);
    ASSERT_THAT(bmc.requests, SizeIs(1));
    EXPECT_EQ(bmc.requests[0].netFn, 0x0A);
    EXPECT_EQ(bmc.requests[0].lun, 0);
    EXPECT_EQ(bmc.requests[0].command, 0x22);
    EXPECT_THAT(bmc.requests[0].data, SizeIs(0));
}

TEST_F(ReservationTest, GetAsksAgainAfterACancellation) {
    reservation.Cancelled(Get());
    EXPECT_EQ(Get(), 0x0102);
}

TEST_F(ReservationTest, ACancellationThatIsReportedTwiceCountsOnce) {
    const std::uint16_t first = Get();
    reservation.Cancelled(first);
    const std::uint16_t second = Get();
    EXPECT_NE(second, first);
    reservation.Cancelled(first);
    EXPECT_EQ(Get(), second);
}

TEST_F(ReservationTest, AReservationOfACallerReplacesTheOneBefore) {
    (void)Get();
    reservation.GrantedToCaller({0x00, {0x34, 0x12}});
    EXPECT_EQ(Get(), 0x1234);
    EXPECT_THAT(bmc.requests, SizeIs(1));
}

TEST_F(ReservationTest, ARefusalToACallerChangesNothing) {
    const std::uint16_t id = Get();
    reservation.GrantedToCaller({0xC1, {0x34, 0x12}});
    reservation.GrantedToCaller({0x00, {0x34}});
    EXPECT_EQ(Get(), id);
}

TEST_F(ReservationTest, ABmcThatGrantsNoneGivesZero) {
    bmc.grantsReservations = false;
    EXPECT_EQ(Get(), 0);
}

TEST_F(ReservationTest, ABmcThatDoesNotAnswerIsAnErrno) {
    bmc.error = ETIMEDOUT;
    std::uint16_t id = 0;
    EXPECT_EQ(reservation.Get(bmc, transport::Deadline::max(), id), ETIMEDOUT);
    bmc.error = 0;
    EXPECT_EQ(Get(), 0x0101);
}

TEST_F(ReservationTest, GetWaitsUntilItsDeadlineWhileAnotherSessionAsks) {
    int error = 0;
    bmc.beforeEach = [&](std::size_t) {
        std::thread([&] {
            FakeBmc same;
            std::uint16_t id = 0;
            error = reservation.Get(same, transport::Deadline::clock::now(), id);
        }).join();
    };
    EXPECT_EQ(Get(), 0x0101);
    EXPECT_EQ(error, ETIMEDOUT);
}

// Another session that has been refused a piece meanwhile is not held up.
TEST_F(ReservationTest, ACancellationIsTakenWhileAnotherSessionAsks) {
    bmc.beforeEach = [&](std::size_t) {
        std::thread([&] { reservation.Cancelled(0x0055); }).join();
    };
    EXPECT_EQ(Get(), 0x0101);
}

}  // namespace
