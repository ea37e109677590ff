// SPDX-License-Identifier: MIT
//
// Thresholds and watchdogs that are not as they should be, and what the library makes of them.

#include <array>

#include "FieldQuirkTest.h"

namespace {

using ::testing::ElementsAre;

class ThresholdQuirkTest : public FieldQuirkTest {
protected:
    std::array<std::uint8_t, 6> Held() { return server->GetBmc().Thresholds(0).values; }
};

// Upper critical below upper non-critical, lower critical above lower non-critical.
constexpr const char* kOutOfOrder = " masks 0x3F 0x3F\nthresholds 0 0x3F 10 20 5 90 80 100\n";

TEST_F(ThresholdQuirkTest, ThresholdsOutOfOrderAreReportedUnchanged) {
    Describe(Temperature(0, "A", kOutOfOrder));
    EXPECT_THAT(Names(), ElementsAre("A"));
    const SensorThresholdInfo& limits = record.temperature[0].sti;
    EXPECT_EQ(limits.LowerNonCriticalThreshold, 10.0);
    EXPECT_EQ(limits.LowerCriticalThreshold, 20.0);
    EXPECT_EQ(limits.LowerNonRecoverThreshold, 5.0);
    EXPECT_EQ(limits.UpperNonCriticalThresholdValue, 90.0);
    EXPECT_EQ(limits.UpperCriticalThresholdValue, 80.0);
    EXPECT_EQ(limits.UpperNonRecoverThresholdValue, 100.0);
}

// In the order lower non-critical, critical, non-recoverable, upper the same.
TEST_F(ThresholdQuirkTest, ThresholdsOutOfOrderAreRepairedFromTheChangedOneOutward) {
    Describe(Temperature(0, "A", kOutOfOrder));
    (void)Names();
    ASSERT_EQ(SetThresholdInfo(3, 1, THRESHOLD_UPPER_CRITICAL, 85), 0);
    EXPECT_THAT(Held(), ElementsAre(10, 9, 5, 84, 85, 100));
}

TEST_F(ThresholdQuirkTest, ThresholdsOutOfOrderOnTheOtherSideStaySo) {
    Describe(Temperature(0, "A", kOutOfOrder));
    (void)Names();
    ASSERT_EQ(SetThresholdInfo(3, 1, THRESHOLD_LOWER_WARNING, 30), 0);
    EXPECT_THAT(Held(), ElementsAre(30, 20, 5, 90, 80, 100));
}

TEST_F(ThresholdQuirkTest, UnreadableThresholdsAreWhatTheirBytesSay) {
    Describe(Temperature(0, "A", " masks 0 0x3F\nthresholds 0 0 1 2 3 4 5 6\n"));
    (void)Names();
    EXPECT_EQ(record.temperature[0].sti.UpperCriticalThresholdValue, 5.0);
}

// Read as zeros, which the set that is written then holds.
TEST_F(ThresholdQuirkTest, RefusedThresholdsAreZeroAndWrittenAsZero) {
    Describe(Temperature(0, "A", " masks 0x3F 0x3F\nthresholds 0 0x3F 10 8 6 80 90 100\n") +
             "fault \"Get Sensor Thresholds\" 1 refused 0xCB\n");
    (void)Names();
    EXPECT_EQ(record.temperature[0].sti.UpperCriticalThresholdValue, 0.0);
    ASSERT_EQ(SetThresholdInfo(3, 1, THRESHOLD_UPPER_CRITICAL, 95), 0);
    EXPECT_THAT(Held(), ElementsAre(0, 0, 0, 0, 95, 96));
}

TEST_F(ThresholdQuirkTest, ARefusedSettingCountsAsDone) {
    Describe(Temperature(0, "A", kOutOfOrder) +
             "fault \"Set Sensor Thresholds\" every refused 0xD5\n");
    (void)Names();
    EXPECT_EQ(SetThresholdInfo(3, 1, THRESHOLD_UPPER_CRITICAL, 85), 0);
    EXPECT_THAT(Held(), ElementsAre(10, 20, 5, 90, 80, 100));
}

class WatchdogQuirkTest : public FieldQuirkTest {
protected:
    // Action, timeout and what is left of it, in milliseconds.
    std::vector<int> State() {
        unsigned char action = 0;
        int timeout = 0;
        int left = 0;
        EXPECT_EQ(GetWatchDogTimer(&action, &timeout, &left), 0);
        return {action, timeout, left};
    }
};

TEST_F(WatchdogQuirkTest, WatchdogThatKeepsCountingIsReportedStoppedAndDisarmed) {
    Describe("watchdog action 1 seconds 60 unstoppable\n");
    (void)server->GetMachine().Sleep(10);
    EXPECT_THAT(State(), ElementsAre(1, 60000, 50000));
    EXPECT_EQ(StopWatchDogTimer(), 0);
    EXPECT_THAT(State(), ElementsAre(0, 180000, 180000));
    (void)server->GetMachine().Sleep(30);
    EXPECT_THAT(State(), ElementsAre(0, 180000, 150000));
    (void)server->GetMachine().Sleep(150);
    EXPECT_EQ(server->GetBmc().WatchdogExpirations(), 1);
}

TEST_F(WatchdogQuirkTest, WatchdogThatRefusesToStopIsReportedStoppedAndFires) {
    Describe("watchdog action 1 seconds 60\nfault \"Set Watchdog Timer\" every refused 0xD5\n");
    EXPECT_EQ(StopWatchDogTimer(), 0);
    (void)server->GetMachine().Sleep(10);
    EXPECT_THAT(State(), ElementsAre(1, 60000, 50000));
    (void)server->GetMachine().Sleep(50);
    EXPECT_EQ(server->GetBmc().WatchdogExpirations(), 1);
}

TEST_F(WatchdogQuirkTest, WatchdogWhoseRequestFailsReadsAsNoneAtAll) {
    Describe("watchdog action 1 seconds 60\nfault \"Get Watchdog Timer\" 1 fails\n");
    EXPECT_THAT(State(), ElementsAre(0, 0, 0));
    EXPECT_THAT(State(), ElementsAre(1, 60000, 60000));
}

}  // namespace
