// SPDX-License-Identifier: MIT
//
// Requests that the simulated controller does not answer as it should, and repositories that are
// not what they say.

#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>

#include "simulator/base/AccessLog.h"
#include "simulator/bmc/Bmc.h"

namespace {

using sim::Bytes;
using Kind = sim::BmcFault::Kind;

class BmcFaultsTest : public testing::Test {
protected:
    BmcFaultsTest() {
        bmc.Add(sim::SdrRecord("A", 1));
        bmc.Add(sim::SdrRecord("B", 2));
        bmc.SetReading(1, 42);
    }

    sim::BmcRequest Send(std::uint8_t netFn, std::uint8_t command, Bytes data) {
        sim::BmcRequest request;
        request.netFn = netFn;
        request.command = command;
        request.data = std::move(data);
        bmc.Answer(request);
        return request;
    }
    sim::BmcRequest Read(std::uint8_t sensor) { return Send(4, 0x2D, {sensor}); }
    sim::BmcRequest Record(std::uint8_t id) { return Send(0x0A, 0x23, {0, 0, id, 0, 0, 0xFF}); }
    // The IDs of the records that a walk reads, at most four.
    std::vector<unsigned> Walk() {
        std::vector<unsigned> ids;
        unsigned id = 0;
        do {
            const Bytes response = Record(static_cast<std::uint8_t>(id)).response;
            ids.push_back(id);
            id = response[0] | (unsigned{response[1]} << 8);
        } while (id != 0xFFFF && ids.size() < 4);
        return ids;
    }

    sim::AccessLog log;
    sim::Bmc bmc{[] { return std::chrono::seconds(0); }, log};
};

TEST_F(BmcFaultsTest, FailureMakesTheDriversCallFailOnce) {
    bmc.Inject("Get Sensor Reading", Kind::kFails, EBUSY, 1);
    const sim::BmcRequest failed = Read(1);
    EXPECT_EQ(failed.error, EBUSY);
    EXPECT_EQ(failed.response, Bytes{});
    EXPECT_EQ(failed.DescribeResponse(), "-1 EBUSY");
    EXPECT_EQ(Read(1).error, 0) << "only once";
}

TEST_F(BmcFaultsTest, CutShortensAResponse) {
    bmc.Inject("Get SDR", Kind::kCut, 7);
    EXPECT_EQ(Record(0).response.size(), 7U);
    EXPECT_EQ(Record(1).response.size(), 7U) << "every response";
    bmc.Inject("Get Sensor Reading", Kind::kCut, 99, 1);
    EXPECT_EQ(Read(1).response.size(), 4U) << "never longer";
}

TEST_F(BmcFaultsTest, CutToNoByteEmptiesTheSecondResponse) {
    bmc.Inject("Get Sensor Reading", Kind::kCut, 0, 2);
    EXPECT_EQ(Read(1).response.size(), 4U);
    const sim::BmcRequest empty = Read(1);
    EXPECT_EQ(empty.response, Bytes{});
    EXPECT_EQ(empty.completion, 0);
    EXPECT_EQ(empty.DescribeResponse(), "0 bytes");
}

TEST_F(BmcFaultsTest, StaleFaultRepeatsThePreviousResponse) {
    const Bytes before = Record(0).response;
    bmc.Inject("Get Sensor Reading", Kind::kStale, 0, 1);
    EXPECT_EQ(Read(1).response, before);
    EXPECT_EQ(Read(1).response[0], 42);
}

TEST_F(BmcFaultsTest, RefusedRequestIsNotCarriedOut) {
    bmc.SetThresholds(1, {0x3F, {1, 2, 3, 4, 5, 6}});
    bmc.Inject("Set Sensor Thresholds", Kind::kRefused, 0xC0, 1);
    const sim::BmcRequest refused = Send(4, 0x26, {1, 0x3F, 9, 9, 9, 9, 9, 9});
    EXPECT_EQ(refused.completion, 0xC0);
    EXPECT_EQ(bmc.Thresholds(1).values[0], 1);
    EXPECT_EQ(refused.DescribeResponse(), "refused, 0xC0 busy");
}

TEST_F(BmcFaultsTest, TwoFaultsOfOneCommandStrikeOneAfterTheOther) {
    bmc.Inject("Get Sensor Reading", Kind::kRefused, 0xC0, 1);
    bmc.Inject("Get Sensor Reading", Kind::kRefused, 0xC3, 2);
    EXPECT_EQ(Read(1).completion, 0xC0);
    EXPECT_EQ(Read(1).completion, 0xC3);
    EXPECT_EQ(Read(1).completion, 0);
}

TEST_F(BmcFaultsTest, FirstOfTwoFaultsOfOneRequestStrikesAndBothAreSpent) {
    bmc.Inject("Get Sensor Reading", Kind::kRefused, 0xC0, 1);
    bmc.Inject("Get Sensor Reading", Kind::kRefused, 0xC3, 1);
    EXPECT_EQ(Read(1).completion, 0xC0);
    EXPECT_EQ(Read(1).completion, 0);
}

TEST_F(BmcFaultsTest, StaleFaultOfTheFirstRequestEmptiesItsResponse) {
    bmc.Inject("Get Sensor Reading", Kind::kStale, 0, 1);
    EXPECT_EQ(Read(1).response, Bytes{});
}

TEST_F(BmcFaultsTest, FaultOfAnUnknownCommandIsRefused) {
    EXPECT_THROW(bmc.Inject("Get Coffee", Kind::kCut, 0), std::invalid_argument);
    EXPECT_THROW(bmc.Inject({0x30, 0x01, 1, Kind::kCut, 0}), std::invalid_argument);
    bmc.Inject({0x04, 0x2D, 1, Kind::kCut, 0});
    EXPECT_EQ(Read(1).response, Bytes{});
}

TEST_F(BmcFaultsTest, RereadByteShowsFromTheSecondReadOn) {
    bmc.AddRecord(sim::SdrRecord("C", 3).Image(), false, {{}, {{7, 0x33}}});
    EXPECT_EQ(Record(2).response[2 + 7], 3);
    EXPECT_EQ(Record(2).response[2 + 7], 0x33);
    EXPECT_EQ(Record(2).response[2 + 7], 0x33);
    EXPECT_THROW(bmc.AddRecord(Bytes(5), false, {{}, {{5, 1}}}), std::invalid_argument);
}

TEST_F(BmcFaultsTest, DeliveredSizeCutsARecordButNotItsHeadersLength) {
    bmc.AddRecord(sim::SdrRecord("C", 3).Image(), false, {20, {}});
    const Bytes response = Record(2).response;
    EXPECT_EQ(response.size(), 2U + 20);
    EXPECT_EQ(response[2 + 4], 59) << "what the header says";
}

TEST_F(BmcFaultsTest, GivenCountReplacesTheNumberOfRecords) {
    for (const std::uint16_t count : std::initializer_list<std::uint16_t>{1, 300}) {
        bmc.SetRepositoryCount(count);
        const Bytes info = Send(0x0A, 0x20, {}).response;
        EXPECT_EQ(info[1] | (unsigned{info[2]} << 8), count);
    }
}

TEST_F(BmcFaultsTest, RecordOfAnotherTypeIsListed) {
    bmc.AddRecord({0, 0, 0x51, 0xC0, 2, 0xAA, 0xBB});
    EXPECT_EQ(Walk(), (std::vector<unsigned>{0, 1, 2}));
    EXPECT_EQ(Record(2).response, (Bytes{0xFF, 0xFF, 2, 0, 0x51, 0xC0, 2, 0xAA, 0xBB}));
}

TEST_F(BmcFaultsTest, RecordOfASensorThatEndsBeforeItsNumberIsListedWithoutASensor) {
    bmc.AddRecord({0, 0, 0x51, 1, 2, 0x20, 0});
    EXPECT_EQ(Record(2).response, (Bytes{0xFF, 0xFF, 2, 0, 0x51, 1, 2, 0x20, 0}));
    EXPECT_EQ(Read(0).completion, 0xCB);
    EXPECT_THROW(bmc.AddRecord(Bytes(4)), std::invalid_argument) << "no whole header";
}

TEST_F(BmcFaultsTest, RecordThatNamesItselfAsNextMakesALoop) {
    bmc.SetNextRecord(1, 1);
    EXPECT_EQ(Walk(), (std::vector<unsigned>{0, 1, 1, 1}));
}

TEST_F(BmcFaultsTest, FirstRecordThatNamesTheEndIsTheLast) {
    bmc.SetNextRecord(0, 0xFFFF);
    EXPECT_EQ(Walk(), (std::vector<unsigned>{0}));
}

struct LoggedRequest {
    std::uint8_t netFn;
    std::uint8_t command;
    Bytes data;
    const char* line;
};

TEST_F(BmcFaultsTest, LogDescribesEachRequestAndItsResponse) {
    bmc.SetInventory(Bytes(16, 1));
    bmc.SetChannel(1, {4, 1});
    bmc.SetUnavailable(2);
    const LoggedRequest rows[] = {
        {0x0A, 0x20, {}, "bmc Get SDR Repository Info -> 2 records"},
        {0x0A, 0x22, {}, "bmc Reserve SDR Repository -> reservation 0x0001"},
        {0x0A, 0x23, {0, 0, 0, 0, 0, 0xFF}, "bmc Get SDR 0x0000 -> 64 bytes, next 0x0001"},
        {0x0A,
         0x23,
         {0, 0, 1, 0, 5, 10},
         "bmc Get SDR 0x0001, 10 bytes from 5 on -> 10 bytes, next 0xFFFF"},
        {0x0A, 0x23, {0, 0, 9, 0, 0, 0xFF}, "bmc Get SDR 0x0009 -> refused, 0xCB not present"},
        {4, 0x2D, {1}, "bmc Get Sensor Reading 0x01 -> reading 42, states 0x00 0x00"},
        {4, 0x2D, {2}, "bmc Get Sensor Reading 0x02 -> unavailable, states 0x00 0x00"},
        {4,
         0x26,
         {1, 0x3F, 1, 2, 3, 4, 5, 6},
         "bmc Set Sensor Thresholds 0x01, mask 0x3F, lower 1 2 3, upper 4 5 6 -> ok"},
        {4, 0x27, {1}, "bmc Get Sensor Thresholds 0x01 -> readable 0x00, lower 1 2 3, upper 4 5 6"},
        {6, 0x01, {}, "bmc Get Device ID -> firmware 1.00"},
        {6, 0x24, {4, 1, 0, 0, 0x58, 2}, "bmc Set Watchdog Timer action 1, 60.0 s -> ok"},
        {6, 0x22, {}, "bmc Reset Watchdog Timer -> ok"},
        {6, 0x25, {}, "bmc Get Watchdog Timer -> action 1, 60.0 s, 60.0 s left, running"},
        {6, 0x42, {1}, "bmc Get Channel Info 1 -> medium 4, protocol 1"},
        {6, 0x47, {2, 2, 's', 'e', 'c'}, "bmc Set User Password user 2, operation 2 -> ok"},
        {0x0A, 0x10, {0}, "bmc Get FRU Inventory Area Info device 0 -> 16 bytes"},
        {0x0A, 0x11, {0, 8, 0, 2}, "bmc Read FRU Data device 0, 0x0008, 2 bytes -> 2 bytes"},
        {0x0C,
         0x01,
         {1, 3, 10, 0, 0, 1},
         "bmc Set LAN Configuration Parameters channel 1, parameter 3, 4 bytes -> ok"},
    };
    for (const LoggedRequest& row : rows) {
        log.Clear();
        (void)Send(row.netFn, row.command, row.data);
        ASSERT_EQ(log.Lines().size(), 2U);
        EXPECT_EQ(log.Lines()[0], row.line);
    }
}

TEST_F(BmcFaultsTest, LogShowsTheBytesOfRequestAndResponse) {
    (void)Read(1);
    EXPECT_EQ(log.Lines().back(), "ipmi Get Sensor Reading 01 -> 00 2A C0 00 00");
    bmc.Inject("Get Sensor Reading", Kind::kFails, EIO, 1);
    (void)Read(1);
    EXPECT_EQ(log.Lines().back(), "ipmi Get Sensor Reading 01 -> -1 EIO");
}

}  // namespace
