// SPDX-License-Identifier: MIT
//
// The walk over the repository, and what it keeps of each record.

#include <array>
#include <climits>
#include <new>

#include "support/FieldTable.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class SensorWalkTest : public IpmiTest {
protected:
    const SensorDescription& Entry(int k) { return Sensors().SensorsInformation[k]; }
    void Walk(int n) { ASSERT_EQ(Sensors().GetSensorNumbers(n), 0); }
    std::size_t Reads() const { return bmc.Count("Get SDR"); }
};

TEST_F(SensorWalkTest, EveryFieldOfARecordIsKept) {
    sim::SdrRecord record = Temperature("CPU1 Temp", 0x30);
    record.Entity(3, 0x61).Factors(272, -3, 1, -2).Unit1(0x00).Linearization(0x80);
    record.Limits(150, 10).ThresholdMasks(0x3F, 0x1B);
    Add(record, 42);
    bmc.SetThresholds(0, {0x3F, {5, 4, 3, 100, 110, 120}});
    Walk(1);
    const SensorDescription& entry = Entry(0);
    ExpectNumbers({
        {"SensorNumbers", entry.SensorNumbers, 0x30},
        {"SensorEntityID", entry.SensorEntityID, 3},
        {"SensorEntityInstance", entry.SensorEntityInstance, 1},
        {"SensorType", entry.SensorType, kTemperature},
        {"SensorEventReadingCode", entry.SensorEventReadingCode, 1},
        {"SensorCodeOffset", entry.SensorCodeOffset, 0},
        {"isAnalogReading", entry.isAnalogReading, 0},
        {"sfp.Unit1", entry.sfp.Unit1, 0},
        {"sfp.SensorLinearization", entry.sfp.SensorLinearization, 0x80},
        {"sfp.M", entry.sfp.M, 272},
        {"sfp.B", entry.sfp.B, -259},  // in two halves
        {"sfp.BExp", entry.sfp.BExp, 1},
        {"sfp.RExp", entry.sfp.RExp, -2},
        {"SensorReadingMaxD", entry.SensorReadingMaxD, (272.0 * 150 - 2590) * 0.01},
    });
    ExpectTexts({
        {"SensorReadingMax", entry.SensorReadingMax, "382.10"},  // the unit is not known yet
        {"SensorReadingMin", entry.SensorReadingMin, "1.30"},
        {"SensorUnit", entry.SensorUnit, "degree C"},
        {"IDString", entry.IDString, "CPU1 Temp"},
    });
    ExpectNumbers({
        {"stir.deviceID", entry.stir.deviceID, 3},
        {"stir.sensorType", entry.stir.sensorType, kTemperature},
        {"stir.readableFlag", entry.stir.readableFlag, 0x3F},
        {"stir.settableFlag", entry.stir.settableFlag, 0x1B},
        {"stir.UpperNonRecoverThresholdValue", entry.stir.UpperNonRecoverThresholdValue, 120},
        {"stic.deviceID", entry.stic.deviceID, 3},
        {"stic.sensorType", entry.stic.sensorType, kTemperature},
        {"stic.settableFlag", entry.stic.settableFlag, 0x1B},
        {"stic.LowerCriticalThreshold", entry.stic.LowerCriticalThreshold,
         (272.0 * 4 - 2590) * 0.01},
    });
}

TEST_F(SensorWalkTest, ANameOfFifteenCharactersIsKeptWhole) {
    Add(Temperature("abcdefghijklmno", 0x10), 0);
    Add(Temperature("abcdefghijklmnop", 0x11), 0);
    Walk(2);
    EXPECT_STREQ(Entry(0).IDString, "abcdefghijklmno");
    EXPECT_STREQ(Entry(1).IDString, "abcdefghijklmno") << "and the sixteenth is cut";
}

TEST_F(SensorWalkTest, RecordsAreReadOneByOneWithoutAReservation) {
    Add(Temperature("A", 0x10), 0);
    Add(Temperature("B", 0x20), 0);
    Walk(2);
    EXPECT_THAT(bmc.RequestTexts(),
                ElementsAre("Get SDR 00 00 00 00 00 FF", "Get Sensor Thresholds 00",
                            "Get SDR 00 00 01 00 00 FF", "Get Sensor Thresholds 01"));
    EXPECT_STREQ(Entry(1).IDString, "B");
}

TEST_F(SensorWalkTest, ThresholdsAreAskedForByTheEntrysIndex) {
    Add(Temperature("A", 0x10), 0);
    bmc.SetThresholds(0x10, {0x3F, {1, 1, 1, 1, 1, 1}});
    bmc.SetThresholds(0x00, {0x3F, {2, 2, 2, 2, 2, 2}});
    Walk(1);
    EXPECT_EQ(Entry(0).stir.LowerCriticalThreshold, 2);
}

TEST_F(SensorWalkTest, OtherRecordTypesAndNamelessSensorsAreSkipped) {
    Add(Temperature("A", 0x10).Byte(3, 2), 0);
    Add(Temperature("B", 0xFF), 0);
    Add(Temperature("C", 0x30), 0);
    Walk(3);
    EXPECT_STREQ(Entry(0).IDString, "C");
    EXPECT_EQ(Entry(1).SensorNumbers, 0);
    EXPECT_EQ(Entry(1).SensorType, 0);
}

TEST_F(SensorWalkTest, AnEntityOfAllOnesIsUnknown) {
    Add(Temperature("A", 0x10).Entity(0xFF, 0xFF), 0);
    Walk(1);
    EXPECT_EQ(Entry(0).SensorEntityID, 0);
    EXPECT_EQ(Entry(0).SensorEntityInstance, 0xFF);
}

TEST_F(SensorWalkTest, DeviceRelativeInstancesCountFromZero) {
    const std::array<std::array<int, 2>, 6> instances{
        {{0x00, 0x00}, {0x5F, 0x5F}, {0x60, 0x00}, {0x7F, 0x1F}, {0x80, 0x80}, {0xFE, 0xFE}}};
    for (const auto& [given, kept] : instances)
        Add(Temperature("A", 0x10).Entity(3, static_cast<std::uint8_t>(given)), 0);
    Walk(6);
    for (int k = 0; k < 6; ++k)
        EXPECT_EQ(Entry(k).SensorEntityInstance, instances[static_cast<std::size_t>(k)][1]) << k;
}

TEST_F(SensorWalkTest, SensorSpecificSensorsKeepTheirState) {
    Add(sim::SdrRecord("P1", 0x40).Kind(kProcessor).Event(0x6F), 0);
    bmc.SetStates(0x40, 0x80);
    Add(sim::SdrRecord("P2", 0x41).Kind(kProcessor).Event(0x01), 0);
    bmc.SetStates(0x41, 0x80);
    Walk(2);
    EXPECT_EQ(Entry(0).SensorCodeOffset, 0x80);
    EXPECT_EQ(Entry(1).SensorCodeOffset, 0);
    EXPECT_EQ(bmc.Count("Get Sensor Reading"), 1u);
}

TEST_F(SensorWalkTest, AStateThatCannotBeReadIsUnknown) {
    Add(sim::SdrRecord("P1", 0x40).Kind(kProcessor).Event(0x6F), 0);
    Support();
    server.During("ioctl", [] { InitOK = 0; });  // within the request for the record
    Walk(1);
    EXPECT_EQ(Entry(0).SensorEventReadingCode, 0x6F);
    EXPECT_EQ(Entry(0).SensorCodeOffset, 0xFF);
}

TEST_F(SensorWalkTest, ASensorWithoutAnalogReadingHasNoLimits) {
    Add(Temperature("A", 0x10).Unit1(0xC0).Limits(200, 10), 0);
    Walk(1);
    EXPECT_EQ(Entry(0).isAnalogReading, 1);
    EXPECT_EQ(Entry(0).SensorReadingMaxD, 0.0);
    EXPECT_STREQ(Entry(0).SensorReadingMax, "");
    EXPECT_STREQ(Entry(0).SensorReadingMin, "");
}

TEST_F(SensorWalkTest, TheSettableThresholdsAreSixBitsAboveTheReadableOnes) {
    Add(Temperature("A", 0x10).ThresholdMasks(0xFF, 0x00), 0);
    Add(Temperature("B", 0x11).ThresholdMasks(0xFF, 0xFF), 0);
    Add(Temperature("C", 0x12).ThresholdMasks(0x00, 0x05), 0);
    Walk(3);
    EXPECT_EQ(Entry(0).stir.settableFlag, 0);
    EXPECT_EQ(Entry(1).stir.settableFlag, 0x3F);
    EXPECT_EQ(Entry(2).stic.settableFlag, 0x05);
}

TEST_F(SensorWalkTest, ACountAboveTheRecordsKeepsTheLastOneOnce) {
    Add(Temperature("A", 0x10), 0);
    Add(Temperature("B", 0x20), 0);
    Walk(5);
    EXPECT_EQ(Reads(), 2u);
    EXPECT_EQ(Entry(2).SensorNumbers, 0);
}

TEST_F(SensorWalkTest, ALastRecordOfAnotherTypeEndsTheRequestsAndNotTheWalk) {
    Add(Temperature("A", 0x10), 0);
    Add(Temperature("B", 0x20).Byte(3, 0x12), 0);
    Walk(5);
    EXPECT_EQ(Reads(), 2u) << "the end of the repository is not asked for again";
    EXPECT_STREQ(Entry(0).IDString, "A");
    EXPECT_EQ(Entry(1).SensorNumbers, 0);
}

TEST_F(SensorWalkTest, ARecordIdOfTheUpperHalfReadsTheRecordBeforeAgain) {
    const sim::Bytes record = Temperature("A", 0x10).Image();
    bmc.Intercept([=](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.command != 0x23) return std::nullopt;
        sim::Bytes response{0x00, 0x80};
        response.insert(response.end(), record.begin(), record.end());
        return response;
    });
    Walk(5);
    EXPECT_EQ(Reads(), 1u);
    EXPECT_STREQ(Entry(0).IDString, "A");
    EXPECT_STREQ(Entry(1).IDString, "A") << "kept twice";
    EXPECT_EQ(Entry(2).SensorNumbers, 0);
}

TEST_F(SensorWalkTest, AControllerThatRefusesEverythingGivesNoSensor) {
    bmc.Intercept([](const sim::BmcRequest&) { return sim::Bytes{}; });
    Walk(3);
    EXPECT_EQ(Entry(0).SensorNumbers, 0);
    EXPECT_EQ(Reads(), 3u);
}

TEST_F(SensorWalkTest, ALoopOfRecordsEndsWithTheCount) {
    const sim::Bytes record = Temperature("A", 0x10).Image();
    bmc.Intercept([=](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.command != 0x23) return std::nullopt;
        sim::Bytes response{0x00, 0x00};
        response.insert(response.end(), record.begin(), record.end());
        return response;
    });
    Walk(300);
    EXPECT_EQ(Reads(), 300u);
    EXPECT_STREQ(Entry(299).IDString, "A");
}

TEST_F(SensorWalkTest, EntryTwoHundredFiftyFiveHasNoThresholds) {
    for (int i = 0; i < 257; ++i) Add(Temperature("A", 0x10), 0);
    bmc.SetThresholds(0xFF, {0x3F, {1, 1, 1, 1, 1, 1}});
    bmc.SetThresholds(0x00, {0x3F, {2, 2, 2, 2, 2, 2}});
    Walk(257);
    EXPECT_EQ(Entry(255).stir.LowerCriticalThreshold, 0) << "0xFF is no sensor";
    EXPECT_EQ(Entry(255).stir.sensorType, kTemperature);
    EXPECT_EQ(Entry(256).stir.LowerCriticalThreshold, 2) << "the index's low byte";
}

TEST_F(SensorWalkTest, WithoutACountOrAControllerThereIsNoWalk) {
    EXPECT_EQ(Sensors().GetSensorNumbers(0), -1);
    EXPECT_EQ(Sensors().GetSensorNumbers(-3), -1);
    InitOK = 0;
    EXPECT_EQ(Sensors().GetSensorNumbers(1), -1);
    EXPECT_EQ(Sensors().SensorsInformation, nullptr);
}

TEST_F(SensorWalkTest, ACountThatNoMemoryHoldsThrowsAndLeavesTheEntries) {
    Add(Temperature("A", 0x10), 0);
    Walk(1);
    const SensorDescription* const entries = Sensors().SensorsInformation;
    bmc.ForgetRequests();
    for (const int count : {9502141, INT_MAX})
        EXPECT_THROW(Sensors().GetSensorNumbers(count), std::bad_alloc) << count;
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
    EXPECT_EQ(Sensors().SensorsInformation, entries);
    EXPECT_STREQ(Entry(0).IDString, "A");
    Walk(1);
    EXPECT_STREQ(Entry(0).IDString, "A");
}

TEST_F(SensorWalkTest, AnotherWalkReplacesTheEntries) {
    Add(Temperature("A", 0x10), 0);
    Walk(1);
    Add(Temperature("B", 0x20), 0);
    Walk(2);
    EXPECT_STREQ(Entry(1).IDString, "B");
}

}  // namespace
