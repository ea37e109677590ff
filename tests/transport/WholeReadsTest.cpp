// SPDX-License-Identifier: MIT
//
// Long reads that a BMC refuses: the pieces that are asked for, and the whole that is handed over.

#include <gmock/gmock.h>

#include <cerrno>

#include "tests/transport/FakeBmc.h"
#include "transport/WholeReads.h"

namespace {

using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::SizeIs;
using transport::Bytes;
using transport::Request;
using transport::Response;

class WholeReadsTest : public ::testing::Test {
protected:
    Response Ask(std::uint8_t command, const Bytes& data) {
        Response response;
        EXPECT_EQ(reads.Exchange({0x0A, 0, command, data}, transport::Deadline::max(), response),
                  0);
        return response;
    }
    Response GetRecord(const Bytes& data = {0, 0, 7, 0, 0, 0xFF}) { return Ask(0x23, data); }
    Response ReadInventory(const Bytes& data) { return Ask(0x11, data); }

    // Offset and count of each Get SDR that reached the BMC.
    std::vector<std::pair<int, int>> RecordPieces() const {
        std::vector<std::pair<int, int>> pieces;
        for (const Request& request : bmc.requests)
            if (request.command == 0x23) pieces.emplace_back(request.data[4], request.data[5]);
        return pieces;
    }
    std::vector<std::pair<int, int>> InventoryPieces() const {
        std::vector<std::pair<int, int>> pieces;
        for (const Request& request : bmc.requests)
            pieces.emplace_back(request.data[1] + 256 * request.data[2], request.data[3]);
        return pieces;
    }
    Bytes WholeRecord() const {
        Bytes whole{0x34, 0x12};
        whole.insert(whole.end(), bmc.record.begin(), bmc.record.end());
        return whole;
    }
    Bytes Inventory(std::size_t offset, std::size_t length) const {
        Bytes area{static_cast<std::uint8_t>(length / bmc.unit)};
        const auto from = bmc.inventory.begin() + static_cast<std::ptrdiff_t>(offset);
        area.insert(area.end(), from, from + static_cast<std::ptrdiff_t>(length));
        return area;
    }

    FakeBmc bmc;
    transport::Reservation reservation;
    transport::WholeReads reads{bmc, reservation};
};

TEST_F(WholeReadsTest, AWholeReadThatTheBmcGrantsPassesUnchanged) {
    bmc.room = 255;
    const Response response = GetRecord();
    EXPECT_EQ(response.completion, 0);
    EXPECT_EQ(response.data, WholeRecord());
    ASSERT_THAT(bmc.requests, SizeIs(1));
    EXPECT_EQ(bmc.requests[0].data, (Bytes{0, 0, 7, 0, 0, 0xFF}));
}

TEST_F(WholeReadsTest, ARefusedRecordIsReadInPiecesUnderAReservation) {
    const Response response = GetRecord();
    EXPECT_EQ(response.completion, 0);
    EXPECT_EQ(response.data, WholeRecord());
    EXPECT_THAT(RecordPieces(),
                ElementsAre(std::pair(0, 0xFF), std::pair(0, 5), std::pair(5, 16),
                            std::pair(21, 16), std::pair(37, 16), std::pair(53, 11)));
    EXPECT_EQ(bmc.requests[1].command, 0x22);
    for (std::size_t i = 2; i < bmc.requests.size(); ++i) {
        EXPECT_EQ(bmc.requests[i].data[0], 0x01);
        EXPECT_EQ(bmc.requests[i].data[1], 0x01);
        EXPECT_EQ(bmc.requests[i].data[2], 7);
    }
}

TEST_F(WholeReadsTest, AfterARefusalTheNextRecordIsReadInPiecesUnderTheSameReservation) {
    (void)GetRecord();
    bmc.requests.clear();
    EXPECT_EQ(GetRecord({0, 0, 8, 0, 0, 0xFF}).data, WholeRecord());
    EXPECT_THAT(RecordPieces(), SizeIs(5));
    EXPECT_THAT(bmc.requests, SizeIs(5));
}

TEST_F(WholeReadsTest, ACancelledReservationIsRenewedAndTheRecordReadAgain) {
    bmc.beforeEach = [this](std::size_t number) {
        if (number != 5) return;  // between two pieces
        ++bmc.reservation;
        bmc.record[6] = 0xEE;  // which the pieces before had as it was
    };
    const Response response = GetRecord();
    EXPECT_EQ(response.completion, 0);
    EXPECT_EQ(response.data, WholeRecord());
    EXPECT_THAT(bmc.requests, SizeIs(5 + 6));
}

TEST_F(WholeReadsTest, AllSessionsReadUnderOneReservation) {
    transport::WholeReads other(bmc, reservation);
    (void)GetRecord();
    Response response;
    ASSERT_EQ(other.Exchange({0x0A, 0, 0x23, {0, 0, 8, 0, 0, 0xFF}}, transport::Deadline::max(),
                             response),
              0);
    EXPECT_EQ(response.data, WholeRecord());
    EXPECT_EQ(GetRecord().data, WholeRecord());
    EXPECT_EQ(bmc.reservation, 0x0101);
}

// A caller that reads in pieces of its own and one that reads whole records do not cancel each
// other's reservation in turn.
TEST_F(WholeReadsTest, ACallersOwnReservationServesWholeReadsToo) {
    (void)GetRecord();
    EXPECT_EQ(Ask(0x22, {}).data, (Bytes{0x02, 0x01}));
    bmc.requests.clear();
    EXPECT_EQ(GetRecord().data, WholeRecord());
    EXPECT_EQ(bmc.reservation, 0x0102);
    EXPECT_THAT(bmc.requests, SizeIs(5));
    EXPECT_EQ(GetRecord({0x02, 0x01, 7, 0, 0, 16}).completion, 0);
}

TEST_F(WholeReadsTest, AReservationThatIsAlwaysCancelledIsGivenUpAfterEightReads) {
    bmc.beforeEach = [this](std::size_t) { ++bmc.reservation; };
    EXPECT_EQ(GetRecord().completion, 0xC5);
    EXPECT_THAT(bmc.requests, SizeIs(1 + 8 * 2));
}

TEST_F(WholeReadsTest, ACallersOwnReservationIsUsedAndItsEndReported) {
    bmc.reservation = 0x0203;
    EXPECT_EQ(GetRecord({0x03, 0x02, 7, 0, 0, 0xFF}).data, WholeRecord());
    EXPECT_EQ(GetRecord({0x04, 0x02, 7, 0, 0, 0xFF}).completion, 0xC5);
    EXPECT_EQ(bmc.reservation, 0x0203);
}

TEST_F(WholeReadsTest, ABmcWithoutReservationsIsReadWithReservationZero) {
    bmc.grantsReservations = false;
    EXPECT_EQ(GetRecord().data, WholeRecord());
    EXPECT_EQ(bmc.requests.back().data[0], 0);
    EXPECT_EQ(bmc.requests.back().data[1], 0);
}

TEST_F(WholeReadsTest, ABufferBelowSixteenBytesGetsSmallerPieces) {
    bmc.room = 6;
    EXPECT_EQ(GetRecord().data, WholeRecord());
    const auto pieces = RecordPieces();
    EXPECT_EQ(pieces[2], std::pair(5, 16));
    EXPECT_EQ(pieces[3], std::pair(5, 8));
    EXPECT_EQ(pieces[4], std::pair(5, 4));
    EXPECT_EQ(pieces[5], std::pair(9, 4));
}

TEST_F(WholeReadsTest, ABmcThatRefusesSingleBytesAnswersItsCompletionCode) {
    bmc.room = 0;
    EXPECT_EQ(GetRecord().completion, 0xCA);
}

TEST_F(WholeReadsTest, AReadFromAnOffsetReturnsTheRestOfTheRecord) {
    const Response response = GetRecord({0, 0, 7, 0, 10, 0xFF});
    Bytes expected{0x34, 0x12};
    expected.insert(expected.end(), bmc.record.begin() + 10, bmc.record.end());
    EXPECT_EQ(response.data, expected);
    EXPECT_EQ(GetRecord({0, 0, 7, 0, 64, 0xFF}).completion, 0xC9);
}

// A caller that counts bytes learns from the refusal how many it gets.
TEST_F(WholeReadsTest, ARefusedRequestForPartOfARecordStaysRefused) {
    bmc.grantsReservations = false;
    (void)GetRecord();
    bmc.requests.clear();
    EXPECT_EQ(GetRecord({0, 0, 7, 0, 0, 0xFE}).completion, 0xCA);
    EXPECT_EQ(GetRecord({0, 0, 7, 0, 10, 30}).completion, 0xCA);
    EXPECT_EQ(GetRecord({0, 0, 7, 0, 10, 20}).completion, 0);
    EXPECT_THAT(bmc.requests, SizeIs(3));
}

TEST_F(WholeReadsTest, NoPieceBeginsBeyondTheReachOfItsOffset) {
    FakeBmc longest(260);
    longest.room = 1;
    transport::WholeReads rest(longest, reservation);
    Response response;
    ASSERT_EQ(rest.Exchange({0x0A, 0, 0x23, {0, 0, 7, 0, 10, 0xFF}}, transport::Deadline::max(),
                            response),
              0);
    EXPECT_THAT(response.data, SizeIs(2 + 246));
    EXPECT_EQ(response.data.back(), longest.record[255]);
}

TEST_F(WholeReadsTest, CommandsOfOtherLunsPassUnchanged) {
    Response response;
    for (const std::uint8_t command : Bytes{0x23, 0x11}) {
        const Bytes data = command == 0x23 ? Bytes{0, 0, 7, 0, 0, 0xFF} : Bytes{0, 0, 0, 0xF8};
        ASSERT_EQ(reads.Exchange({0x0A, 1, command, data}, transport::Deadline::max(), response),
                  0);
        EXPECT_EQ(response.completion, 0xCA);
    }
    EXPECT_THAT(bmc.requests, SizeIs(2));
}

TEST_F(WholeReadsTest, ShortReadsOfTheInventoryPassUnchanged) {
    bmc.room = 15;
    EXPECT_EQ(ReadInventory({0, 0, 0, 16}).completion, 0xCA);
    EXPECT_THAT(bmc.requests, SizeIs(1));
}

TEST_F(WholeReadsTest, EachCompletionCodeForTooLongLeadsToPieces) {
    for (const std::uint8_t code : Bytes{0xC7, 0xC8, 0xCA}) {
        bmc.tooLong = code;
        transport::WholeReads fresh(bmc, reservation);
        Response response;
        ASSERT_EQ(fresh.Exchange({0x0A, 0, 0x23, {0, 0, 7, 0, 0, 0xFF}}, transport::Deadline::max(),
                                 response),
                  0);
        EXPECT_EQ(response.data, WholeRecord()) << int{code};
    }
}

TEST_F(WholeReadsTest, AnotherRefusalOfAWholeRecordIsTheAnswer) {
    bmc.tooLong = 0xCB;  // no such record
    EXPECT_EQ(GetRecord().completion, 0xCB);
    EXPECT_THAT(bmc.requests, SizeIs(1));
}

TEST_F(WholeReadsTest, PiecesWithoutBytesEndTheReadWithAnUnspecifiedError) {
    bmc.emptyPieces = true;
    EXPECT_EQ(GetRecord().completion, 0xFF);
    EXPECT_EQ(ReadInventory({0, 0, 0, 0xF8}).completion, 0xFF);
}

TEST_F(WholeReadsTest, TheLongestRecordEndsWithTheReachOfItsOffset) {
    FakeBmc longest(260);
    transport::WholeReads whole(longest, reservation);
    Response response;
    ASSERT_EQ(whole.Exchange({0x0A, 0, 0x23, {0, 0, 7, 0, 0, 0xFF}}, transport::Deadline::max(),
                             response),
              0);
    EXPECT_THAT(response.data, SizeIs(2 + 255));
    EXPECT_EQ(response.data.back(), longest.record[254]);
}

TEST_F(WholeReadsTest, ShortRequestsAndOtherCommandsPassUnchanged) {
    EXPECT_EQ(GetRecord({0, 0, 7, 0, 0, 16}).completion, 0xC5);
    Response response;
    ASSERT_EQ(reads.Exchange({0x06, 0, 0x23, {0, 0, 7, 0, 0, 0xFF}}, transport::Deadline::max(),
                             response),
              0);
    EXPECT_EQ(response.data, Bytes{0xAB});
    ASSERT_EQ(reads.Exchange({0x06, 0, 0x01, {}}, transport::Deadline::max(), response), 0);
    EXPECT_THAT(bmc.requests, SizeIs(3));
}

TEST_F(WholeReadsTest, AnErrorInThePiecesIsTheAnswer) {
    bmc.recordCompletion = 0xC3;
    const Response response = GetRecord();
    EXPECT_EQ(response.completion, 0xC3);
    EXPECT_EQ(response.data, Bytes());
}

TEST_F(WholeReadsTest, ABmcThatStopsAnsweringInThePiecesIsReported) {
    bmc.beforeEach = [this](std::size_t number) { bmc.error = number == 4 ? ETIMEDOUT : 0; };
    Response response;
    EXPECT_EQ(reads.Exchange({0x0A, 0, 0x23, {0, 0, 7, 0, 0, 0xFF}}, transport::Deadline::max(),
                             response),
              ETIMEDOUT);
}

TEST_F(WholeReadsTest, ARefusedInventoryAreaIsReadInPieces) {
    const Response response = ReadInventory({0, 8, 0, 40});
    EXPECT_EQ(response.completion, 0);
    EXPECT_EQ(response.data, Inventory(8, 40));
    EXPECT_THAT(InventoryPieces(), ElementsAre(std::pair(8, 40), std::pair(8, 16),
                                               std::pair(24, 16), std::pair(40, 8)));
}

TEST_F(WholeReadsTest, AnAreaBeyondTheEndOfTheDeviceIsCutThere) {
    const Response response = ReadInventory({0, 160, 0, 0xF8});
    EXPECT_EQ(response.completion, 0);
    EXPECT_EQ(response.data, Inventory(160, 40));
    EXPECT_EQ(ReadInventory({0, 200, 0, 0xF8}).completion, 0xC9);
}

TEST_F(WholeReadsTest, OffsetsOfTheInventoryCarryIntoTheirHighByte) {
    bmc.inventory.resize(400, 0x5A);
    EXPECT_EQ(ReadInventory({0, 0xF0, 0, 0x40}).data, Inventory(0xF0, 0x40));
    EXPECT_EQ(InventoryPieces().at(2), std::pair(0x100, 16));
}

TEST_F(WholeReadsTest, AnInventoryOfWordsIsCountedInWords) {
    bmc.unit = 2;
    bmc.room = 32;
    const Response response = ReadInventory({0, 4, 0, 30});
    EXPECT_EQ(response.data, Inventory(8, 60));
    EXPECT_THAT(InventoryPieces(),
                ElementsAre(std::pair(4, 30), std::pair(4, 16), std::pair(20, 14)));
}

}  // namespace
