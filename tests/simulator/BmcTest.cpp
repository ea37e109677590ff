// SPDX-License-Identifier: MIT
//
// The simulated controller: its answers to commands, right and wrong.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "simulator/base/AccessLog.h"
#include "simulator/bmc/Bmc.h"

namespace {

using sim::Bytes;
using testing::ElementsAre;

class BmcTest : public testing::Test {
protected:
    // Completion code, then the response.
    Bytes Ask(std::uint8_t netFn, std::uint8_t command, Bytes data) {
        sim::BmcRequest request;
        request.netFn = netFn;
        request.command = command;
        request.data = std::move(data);
        bmc.Answer(request);
        request.response.insert(request.response.begin(), request.completion);
        return request.response;
    }

    std::chrono::seconds now{0};
    sim::AccessLog log;
    sim::Bmc bmc{[this] { return now; }, log};
};

TEST_F(BmcTest, UnknownCommandsAndShortRequestsAreRefused) {
    EXPECT_EQ(Ask(6, 0x99, {}), Bytes{0xC1});
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 0, 0, 0}), Bytes{0xC7});
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Command 06 99 with", "Get SDR 00 00 00 00 00"));
    EXPECT_THAT(log.Lines(),
                ElementsAre("bmc command 0x99 of function 0x06 -> refused, 0xC1 unknown command",
                            "ipmi Command 06 99 with -> C1",
                            "bmc Get SDR, 5 bytes -> refused, 0xC7 wrong length",
                            "ipmi Get SDR 00 00 00 00 00 -> C7"));
}

TEST_F(BmcTest, RecordsAreNumberedAndLinked) {
    bmc.Add(sim::SdrRecord("A", 1));
    bmc.Add(sim::SdrRecord("B", 2));
    EXPECT_EQ(Ask(0x0A, 0x20, {})[2], 2) << "the count";
    const Bytes first = Ask(0x0A, 0x23, {0, 0, 0, 0, 0, 0xFF});
    ASSERT_EQ(first.size(), 3u + 64);
    EXPECT_EQ(first[0], 0);
    EXPECT_EQ(first[1], 1) << "the next one's ID";
    EXPECT_EQ(first[3 + 48], 'A');
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 1, 0, 0, 3}), (Bytes{0, 0xFF, 0xFF, 1, 0, 0x51}));
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 1, 0, 48, 1}), (Bytes{0, 0xFF, 0xFF, 'B'}));
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 2, 0, 0, 0xFF}), Bytes{0xCB});
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 1, 0, 65, 1}), Bytes{0xC9});
}

TEST_F(BmcTest, DumpKeepsItsRecordIds) {
    Bytes dump = sim::SdrRecord("A", 1).Byte(0, 0x34).Byte(1, 0x12).Image();
    const Bytes second = sim::SdrRecord("B", 2).Byte(0, 0x99).Image();
    dump.insert(dump.end(), second.begin(), second.end());
    bmc.LoadRepository(dump);
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 0, 0, 0, 0}), (Bytes{0, 0x99, 0x00}));
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 0x34, 0x12, 0, 0}), (Bytes{0, 0x99, 0x00}));
    EXPECT_THROW(bmc.LoadRepository(dump), std::invalid_argument) << "IDs that are there";
    dump[0] = 0x35;
    dump.pop_back();
    EXPECT_THROW(bmc.LoadRepository(dump), std::runtime_error);
    EXPECT_THROW(bmc.LoadRepository(Bytes{1, 2, 3}), std::runtime_error);
}

TEST_F(BmcTest, RecordAfterIdFffeIsRefused) {
    bmc.AddRecord(sim::SdrRecord("A", 1).Byte(0, 0xFE).Byte(1, 0xFF).Image(), true);
    EXPECT_THROW(bmc.Add(sim::SdrRecord("B", 2)), std::invalid_argument);
}

TEST_F(BmcTest, SensorsOfRecordsAndGivenSensorsAnswer) {
    EXPECT_EQ(Ask(4, 0x2D, {7}), Bytes{0xCB});
    bmc.Add(sim::SdrRecord("A", 7));
    EXPECT_EQ(Ask(4, 0x2D, {7}), (Bytes{0, 0, 0xC0, 0, 0}));
    bmc.SetReading(9, 42);
    bmc.SetStates(9, 1, 2);
    EXPECT_EQ(Ask(4, 0x2D, {9}), (Bytes{0, 42, 0xC0, 1, 2}));
}

TEST_F(BmcTest, ReadingsAndStatesFollowTheirTimeline) {
    bmc.SetReading(9, 10);
    bmc.SetReading(9, 80, std::chrono::seconds(5));
    bmc.SetUnavailable(9, std::chrono::seconds(8));
    bmc.SetStates(9, 1, 2, std::chrono::seconds(7));
    EXPECT_EQ(Ask(4, 0x2D, {9}), (Bytes{0, 10, 0xC0, 0, 0}));
    now = std::chrono::seconds(4);
    EXPECT_EQ(Ask(4, 0x2D, {9}), (Bytes{0, 10, 0xC0, 0, 0}));
    now = std::chrono::seconds(5);
    EXPECT_EQ(Ask(4, 0x2D, {9}), (Bytes{0, 80, 0xC0, 0, 0}));
    now = std::chrono::seconds(7);
    EXPECT_EQ(Ask(4, 0x2D, {9}), (Bytes{0, 80, 0xC0, 1, 2}));
    now = std::chrono::seconds(100);
    EXPECT_EQ(Ask(4, 0x2D, {9}), (Bytes{0, 0, 0xE0, 1, 2})) << "unavailable";
}

TEST_F(BmcTest, SetThresholdsStoresThoseOfTheMask) {
    EXPECT_EQ(Ask(4, 0x27, {7}), Bytes{0xCB});
    EXPECT_EQ(Ask(4, 0x26, {7, 0x3F, 1, 2, 3, 4, 5, 6}), Bytes{0xCB});
    EXPECT_EQ(bmc.Thresholds(7).readable, 0) << "of no sensor";
    bmc.SetThresholds(7, {0x1F, {1, 1, 1, 1, 1, 1}});
    EXPECT_EQ(Ask(4, 0x26, {7, 0x21, 9, 9, 9, 9, 9, 9}), Bytes{0});
    EXPECT_EQ(Ask(4, 0x27, {7}), (Bytes{0, 0x1F, 9, 1, 1, 1, 1, 9}));
}

TEST_F(BmcTest, StartedWatchdogCountsDownAndExpiresOnce) {
    EXPECT_EQ(Ask(6, 0x22, {}), Bytes{0x80}) << "not set yet";
    EXPECT_EQ(Ask(6, 0x24, {4, 1, 0, 0, 100, 0}), Bytes{0});
    now = std::chrono::seconds(50);
    EXPECT_EQ(bmc.WatchdogExpirations(), 0) << "not started";
    EXPECT_EQ(Ask(6, 0x22, {}), Bytes{0});
    now = std::chrono::seconds(57);
    EXPECT_EQ(Ask(6, 0x25, {}), (Bytes{0, 0x44, 1, 0, 0, 100, 0, 30, 0}));
    now = std::chrono::seconds(60);
    EXPECT_EQ(bmc.WatchdogExpirations(), 1);
    EXPECT_EQ(Ask(6, 0x25, {}), (Bytes{0, 0x04, 1, 0, 0, 100, 0, 0, 0}));
    now = std::chrono::seconds(90);
    EXPECT_EQ(bmc.WatchdogExpirations(), 1) << "only once";
}

TEST_F(BmcTest, SetWatchdogTimerStopsItUnlessTheDontStopBitIsSet) {
    (void)Ask(6, 0x24, {4, 1, 0, 0, 100, 0});
    (void)Ask(6, 0x22, {});
    (void)Ask(6, 0x24, {0x44, 1, 0, 0, 100, 0});
    EXPECT_TRUE(bmc.Watchdog().running);
    (void)Ask(6, 0x24, {0x04, 1, 0, 0, 100, 0});
    EXPECT_FALSE(bmc.Watchdog().running);
}

TEST_F(BmcTest, UnstoppableWatchdogCountsOnAfterSetWatchdogTimer) {
    bmc.MakeWatchdogUnstoppable();
    (void)Ask(6, 0x24, {4, 1, 0, 0, 100, 0});
    EXPECT_FALSE(bmc.Watchdog().running) << "not started yet";
    (void)Ask(6, 0x22, {});
    EXPECT_EQ(Ask(6, 0x24, {4, 0, 0, 0, 200, 0}), Bytes{0});
    EXPECT_TRUE(bmc.Watchdog().running);
    now = std::chrono::seconds(20);
    EXPECT_EQ(bmc.WatchdogExpirations(), 1);
}

TEST_F(BmcTest, WatchdogStartedByTheFirmwareRunsFromTheStart) {
    bmc.StartWatchdog(1, 60);
    now = std::chrono::seconds(10);
    EXPECT_EQ(Ask(6, 0x25, {}), (Bytes{0, 0x42, 1, 0, 0, 0x58, 0x02, 0xF4, 0x01}));
}

TEST_F(BmcTest, InventoryIsReadInPieces) {
    EXPECT_EQ(Ask(0x0A, 0x10, {0}), Bytes{0xCB});
    bmc.SetInventory({10, 11, 12, 13});
    EXPECT_EQ(Ask(0x0A, 0x10, {0}), (Bytes{0, 4, 0, 0}));
    EXPECT_EQ(Ask(0x0A, 0x10, {1}), Bytes{0xCB}) << "another device";
    EXPECT_EQ(Ask(0x0A, 0x11, {0, 1, 0, 2}), (Bytes{0, 2, 11, 12}));
    EXPECT_EQ(Ask(0x0A, 0x11, {0, 2, 0, 9}), (Bytes{0, 2, 12, 13})) << "no more than there is";
    EXPECT_EQ(Ask(0x0A, 0x11, {0, 4, 0, 1}), Bytes{0xC9});
    EXPECT_EQ(Ask(0x0A, 0x11, {1, 1, 0, 2}), Bytes{0xCB}) << "another device";
}

TEST_F(BmcTest, ChannelsUsersAndLanSettingsAreKept) {
    EXPECT_EQ(Ask(6, 0x42, {3}), Bytes{0xCC});
    bmc.SetChannel(3, {4, 1});
    EXPECT_THAT(Ask(6, 0x42, {3}), ElementsAre(0, 3, 4, 1, 0, 0xF2, 0x1B, 0, 0, 0));
    EXPECT_EQ(Ask(6, 0x42, {3, 1}), Bytes{0xC7});
    EXPECT_EQ(Ask(6, 0x47, {2, 0}), Bytes{0});
    EXPECT_EQ(bmc.Users().at(2), Bytes{0});
    EXPECT_EQ(Ask(0x0C, 0x01, {1, 0, 1}), Bytes{0});
    EXPECT_EQ(Ask(0x0C, 0x01, {1, 0, 1}), Bytes{0x81}) << "in progress already";
    EXPECT_EQ(Ask(0x0C, 0x01, {1, 3, 10, 0, 0, 1}), Bytes{0});
    EXPECT_EQ(bmc.Lan().at({1, 3}), (Bytes{10, 0, 0, 1}));
}

TEST_F(BmcTest, InterceptorAnswersInPlaceOfTheController) {
    bmc.Intercept([](const sim::BmcRequest& request) -> std::optional<Bytes> {
        if (request.command == 0x2D) return Bytes{1, 2};
        return std::nullopt;
    });
    EXPECT_EQ(Ask(4, 0x2D, {7}), (Bytes{0, 1, 2}));
    EXPECT_EQ(Ask(6, 0x01, {})[3], 1) << "the controller's own firmware revision";
    EXPECT_EQ(bmc.Count("Get Sensor Reading"), 1u);
    EXPECT_EQ(bmc.Count(4, 0x2D), 1u) << "the same command by its numbers";
    EXPECT_THROW((void)bmc.Count("Get Sensor"), std::invalid_argument);
    bmc.ForgetRequests();
    EXPECT_EQ(bmc.Count("Get Sensor Reading"), 0u);
}

TEST_F(BmcTest, LogCountsTheBytesOfAnUnknownCommandThatIsAnswered) {
    Bytes answer;
    bmc.Intercept([&](const sim::BmcRequest&) { return std::optional(answer); });
    (void)Ask(0x30, 0x01, {});
    answer = {7, 8, 9};
    (void)Ask(0x30, 0x01, {});
    EXPECT_THAT(log.Lines(), ElementsAre("bmc command 0x01 of function 0x30 -> ok",
                                         "ipmi Command 30 01 with -> 00",
                                         "bmc command 0x01 of function 0x30 -> 3 bytes",
                                         "ipmi Command 30 01 with -> 00 07 08 09"));
}

TEST(SdrRecordTest, ValueThatDoesNotFitIsRefused) {
    EXPECT_THROW(sim::SdrRecord("seventeen letters", 1), std::invalid_argument);
    EXPECT_THROW(sim::SdrRecord("A", 1).Factors(512, 0, 0, 0), std::invalid_argument);
    EXPECT_THROW(sim::SdrRecord("A", 1).Factors(0, -513, 0, 0), std::invalid_argument);
    EXPECT_THROW(sim::SdrRecord("A", 1).Factors(0, 0, 8, 0), std::invalid_argument);
    EXPECT_THROW(sim::SdrRecord("A", 1).Byte(64, 0), std::out_of_range);
}

TEST(SdrRecordTest, FactorsArePackedIntoTheirBits) {
    const Bytes record = sim::SdrRecord("A", 1).Factors(-1, 511, -7, -2).Image();
    EXPECT_EQ(record[24], 0xFF);
    EXPECT_EQ(record[25], 0xC0);
    EXPECT_EQ(record[26], 0xFF);
    EXPECT_EQ(record[27], 0x40);
    EXPECT_EQ(record[29], 0xE9);
}

}  // namespace
