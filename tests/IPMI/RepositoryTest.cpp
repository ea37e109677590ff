// SPDX-License-Identifier: MIT
//
// The repository commands and the walk.

#include <array>
#include <cstring>

#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class Repository : public IpmiTest {
protected:
    static std::array<unsigned char, 256> Empty() { return {}; }
    const SensorDescription& Entry(int k) { return Sensors().SensorsInformation[k]; }
    void Walk(int n) { ASSERT_EQ(Sensors().GetSensorNumbers(n), 0); }
    std::size_t Reads() const { return bmc.count(0x0A, 0x23); }
};

TEST_F(Repository, ItsInfoIsRecordCountAndVersion) {
    bmc.intercept([](const sim::BmcRequest&) { return sim::Bytes{0x51, 0x34, 0x12, 9}; });
    int count = 0;
    int version = 0;
    EXPECT_EQ(Support().GetSDRRepositoryInfo(count, version), 0);
    EXPECT_EQ(count, 0x1234);
    EXPECT_EQ(version, 0x51);
    EXPECT_THAT(bmc.requestTexts(), ElementsAre("Get SDR Repository Info"));
    EXPECT_EQ(bmc.requests()[0].timeout, 3000u);
    EXPECT_EQ(bmc.requests()[0].responder, 0xFF);
}

TEST_F(Repository, AReservationHasSixteenBits) {
    bmc.intercept([](const sim::BmcRequest&) { return sim::Bytes{0x34, 0x12}; });
    unsigned short reservation = 0;
    EXPECT_EQ(Sensors().ReserveSDRRepository(reservation), 0);
    EXPECT_EQ(reservation, 0x1234);
    EXPECT_THAT(bmc.requestTexts(), ElementsAre("Reserve SDR Repository"));
}

TEST_F(Repository, ARecordIsAskedForFromItsStart) {
    bmc.intercept([](const sim::BmcRequest&) { return sim::Bytes{0x78, 0x56, 1, 2, 3}; });
    auto out = Empty();
    EXPECT_EQ(Sensors().GetSDR(0x1234, 0xABCD, out.data(), 5), 0x5678);
    EXPECT_THAT(bmc.requestTexts(), ElementsAre("Get SDR 34 12 CD AB 00 05"));
    EXPECT_EQ(out[0], 1);
    EXPECT_EQ(out[2], 3);
    EXPECT_EQ(out[3], 0);
}

TEST_F(Repository, ARecordHasExactlyTheBytesAskedForAndZerosPastTheResponse) {
    bmc.intercept([](const sim::BmcRequest&) { return sim::Bytes(256, 0x11); });
    auto out = Empty();
    out.fill(0xEE);
    EXPECT_EQ(Sensors().GetSDR(0, 0, out.data(), 255), 0x1111);
    EXPECT_EQ(out[253], 0x11);
    EXPECT_EQ(out[254], 0) << "past the response buffer";
    EXPECT_EQ(out[255], 0xEE) << "not asked for";
}

TEST_F(Repository, ANegativeRecordIdIsRefusedWithoutARequest) {
    auto out = Empty();
    EXPECT_EQ(Sensors().GetSDR(0, -1, out.data(), 255), -1);
    EXPECT_THAT(bmc.requests(), SizeIs(0));
}

TEST_F(Repository, ARefusedRequestReadsAsZeros) {
    Support();
    server.fail("ioctl", 1);
    int count = 7;
    int version = 7;
    EXPECT_EQ(Support().GetSDRRepositoryInfo(count, version), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(version, 0);
}

TEST_F(Repository, AStaleResponseIsNeverSeen) {
    Add(Temperature("T", 0x10), 99);
    unsigned char reading = 0;
    ASSERT_EQ(Sensors().ReadSensor(0x10, reading), 0);
    ASSERT_EQ(reading, 99);
    bmc.intercept([](const sim::BmcRequest&) { return sim::Bytes{}; });
    EXPECT_EQ(Sensors().ReadSensor(0x10, reading), 0);
    EXPECT_EQ(reading, 0);
}

TEST_F(Repository, AReadingIsTheFirstByte) {
    Add(Temperature("T", 0x10), 42);
    unsigned char reading = 0;
    EXPECT_EQ(Sensors().ReadSensor(0x10, reading), 0);
    EXPECT_EQ(reading, 42);
    EXPECT_THAT(bmc.requestTexts(), ElementsAre("Get Sensor Reading 10"));
}

TEST_F(Repository, TheRequestRecordHoldsNoDataAfterwards) {
    unsigned char reading = 0;
    ASSERT_EQ(Sensors().ReadSensor(0x10, reading), 0);
    EXPECT_EQ(Sensors().request.data, nullptr);
    EXPECT_EQ(Sensors().request.rsSa, 0xFF);
    EXPECT_EQ(Sensors().request.dataLength, 1);
}

// The walk.

TEST_F(Repository, EveryFieldOfARecordIsKept) {
    sim::SdrRecord record = Temperature("CPU1 Temp", 0x30);
    record.entity(3, 0x61).factors(272, -3, 1, -2).unit1(0x00).linearization(0x80);
    record.limits(150, 10).thresholdMasks(0x3F, 0x1B);
    Add(record, 42);
    bmc.setThresholds(0, {0x3F, {5, 4, 3, 100, 110, 120}});
    Walk(1);
    const SensorDescription& entry = Entry(0);
    EXPECT_EQ(entry.SensorNumbers, 0x30);
    EXPECT_EQ(entry.SensorEntityID, 3);
    EXPECT_EQ(entry.SensorEntityInstance, 1);
    EXPECT_EQ(entry.SensorType, kTemperature);
    EXPECT_EQ(entry.SensorEventReadingCode, 1);
    EXPECT_EQ(entry.SensorCodeOffset, 0);
    EXPECT_EQ(entry.isAnalogReading, 0);
    EXPECT_EQ(entry.sfp.Unit1, 0);
    EXPECT_EQ(entry.sfp.SensorLinearization, 0x80);
    EXPECT_EQ(entry.sfp.M, 272);
    EXPECT_EQ(entry.sfp.B, -259) << "in two halves";
    EXPECT_EQ(entry.sfp.BExp, 1);
    EXPECT_EQ(entry.sfp.RExp, -2);
    EXPECT_EQ(entry.SensorReadingMaxD, (272.0 * 150 - 2590) * 0.01);
    EXPECT_STREQ(entry.SensorReadingMax, "382.10") << "the unit is not known yet";
    EXPECT_STREQ(entry.SensorReadingMin, "1.30");
    EXPECT_STREQ(entry.SensorUnit, "degree C");
    EXPECT_STREQ(entry.IDString, "CPU1 Temp");
    EXPECT_EQ(entry.stir.deviceID, 3);
    EXPECT_EQ(entry.stir.sensorType, kTemperature);
    EXPECT_EQ(entry.stir.readableFlag, 0x3F);
    EXPECT_EQ(entry.stir.settableFlag, 0x1B);
    EXPECT_EQ(entry.stir.UpperNonRecoverThresholdValue, 120);
    EXPECT_EQ(entry.stic.deviceID, 3);
    EXPECT_EQ(entry.stic.settableFlag, 0x1B);
    EXPECT_EQ(entry.stic.LowerCriticalThreshold, (272.0 * 4 - 2590) * 0.01);
}

TEST_F(Repository, RecordsAreReadOneByOneWithoutAReservation) {
    Add(Temperature("A", 0x10), 0);
    Add(Temperature("B", 0x20), 0);
    Walk(2);
    EXPECT_THAT(bmc.requestTexts(),
                ElementsAre("Get SDR 00 00 00 00 00 FF", "Get Sensor Thresholds 00",
                            "Get SDR 00 00 01 00 00 FF", "Get Sensor Thresholds 01"));
    EXPECT_STREQ(Entry(1).IDString, "B");
}

TEST_F(Repository, ThresholdsAreAskedForByTheEntrysIndex) {
    Add(Temperature("A", 0x10), 0);
    bmc.setThresholds(0x10, {0x3F, {1, 1, 1, 1, 1, 1}});
    bmc.setThresholds(0x00, {0x3F, {2, 2, 2, 2, 2, 2}});
    Walk(1);
    EXPECT_EQ(Entry(0).stir.LowerCriticalThreshold, 2);
}

TEST_F(Repository, OtherRecordTypesAndNamelessSensorsAreSkipped) {
    Add(Temperature("A", 0x10).byte(3, 2), 0);
    Add(Temperature("B", 0xFF), 0);
    Add(Temperature("C", 0x30), 0);
    Walk(3);
    EXPECT_STREQ(Entry(0).IDString, "C");
    EXPECT_EQ(Entry(1).SensorNumbers, 0);
    EXPECT_EQ(Entry(1).SensorType, 0);
}

TEST_F(Repository, AnEntityOfAllOnesIsUnknown) {
    Add(Temperature("A", 0x10).entity(0xFF, 0xFF), 0);
    Walk(1);
    EXPECT_EQ(Entry(0).SensorEntityID, 0);
    EXPECT_EQ(Entry(0).SensorEntityInstance, 0xFF);
}

TEST_F(Repository, DeviceRelativeInstancesCountFromZero) {
    const std::array<std::array<int, 2>, 6> instances{
        {{0x00, 0x00}, {0x5F, 0x5F}, {0x60, 0x00}, {0x7F, 0x1F}, {0x80, 0x80}, {0xFE, 0xFE}}};
    for (const auto& [given, kept] : instances)
        Add(Temperature("A", 0x10).entity(3, static_cast<std::uint8_t>(given)), 0);
    Walk(6);
    for (int k = 0; k < 6; ++k)
        EXPECT_EQ(Entry(k).SensorEntityInstance, instances[static_cast<std::size_t>(k)][1]) << k;
}

TEST_F(Repository, SensorSpecificSensorsKeepTheirState) {
    Add(sim::SdrRecord("P1", 0x40).kind(kProcessor).event(0x6F), 0);
    bmc.setStates(0x40, 0x80);
    Add(sim::SdrRecord("P2", 0x41).kind(kProcessor).event(0x01), 0);
    bmc.setStates(0x41, 0x80);
    Walk(2);
    EXPECT_EQ(Entry(0).SensorCodeOffset, 0x80);
    EXPECT_EQ(Entry(1).SensorCodeOffset, 0);
    EXPECT_EQ(bmc.count(0x04, 0x2D), 1u);
}

TEST_F(Repository, ASensorWithoutAnalogReadingHasNoLimits) {
    Add(Temperature("A", 0x10).unit1(0xC0).limits(200, 10), 0);
    Walk(1);
    EXPECT_EQ(Entry(0).isAnalogReading, 1);
    EXPECT_EQ(Entry(0).SensorReadingMaxD, 0.0);
    EXPECT_STREQ(Entry(0).SensorReadingMax, "");
    EXPECT_STREQ(Entry(0).SensorReadingMin, "");
}

TEST_F(Repository, AllReadableAndNoneSettableIsNoneSettable) {
    Add(Temperature("A", 0x10).thresholdMasks(0xFF, 0x00), 0);
    Add(Temperature("B", 0x11).thresholdMasks(0xFF, 0xFF), 0);
    Add(Temperature("C", 0x12).thresholdMasks(0x00, 0x05), 0);
    Walk(3);
    EXPECT_EQ(Entry(0).stir.settableFlag, 0);
    EXPECT_EQ(Entry(1).stir.settableFlag, 0x3F);
    EXPECT_EQ(Entry(2).stic.settableFlag, 0x05);
}

TEST_F(Repository, ACountAboveTheRecordsKeepsTheLastOneOnce) {
    Add(Temperature("A", 0x10), 0);
    Add(Temperature("B", 0x20), 0);
    Walk(5);
    EXPECT_EQ(Reads(), 2u);
    EXPECT_EQ(Entry(2).SensorNumbers, 0);
}

TEST_F(Repository, ALastRecordOfAnotherTypeEndsTheRequestsAndNotTheWalk) {
    Add(Temperature("A", 0x10), 0);
    Add(Temperature("B", 0x20).byte(3, 0x12), 0);
    Walk(5);
    EXPECT_EQ(Reads(), 2u) << "the end of the repository is not asked for again";
    EXPECT_STREQ(Entry(0).IDString, "A");
    EXPECT_EQ(Entry(1).SensorNumbers, 0);
}

TEST_F(Repository, ARecordIdOfTheUpperHalfReadsTheRecordBeforeAgain) {
    const sim::Bytes record = Temperature("A", 0x10).bytes();
    bmc.intercept([=](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
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

TEST_F(Repository, AControllerThatRefusesEverythingGivesNoSensor) {
    bmc.intercept([](const sim::BmcRequest&) { return sim::Bytes{}; });
    Walk(3);
    EXPECT_EQ(Entry(0).SensorNumbers, 0);
    EXPECT_EQ(Reads(), 3u);
}

TEST_F(Repository, ALoopOfRecordsEndsWithTheCount) {
    const sim::Bytes record = Temperature("A", 0x10).bytes();
    bmc.intercept([=](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.command != 0x23) return std::nullopt;
        sim::Bytes response{0x00, 0x00};
        response.insert(response.end(), record.begin(), record.end());
        return response;
    });
    Walk(300);
    EXPECT_EQ(Reads(), 300u);
    EXPECT_STREQ(Entry(299).IDString, "A");
}

TEST_F(Repository, EntryTwoHundredFiftyFiveHasNoThresholds) {
    for (int i = 0; i < 257; ++i) Add(Temperature("A", 0x10), 0);
    bmc.setThresholds(0xFF, {0x3F, {1, 1, 1, 1, 1, 1}});
    bmc.setThresholds(0x00, {0x3F, {2, 2, 2, 2, 2, 2}});
    Walk(257);
    EXPECT_EQ(Entry(255).stir.LowerCriticalThreshold, 0) << "0xFF is no sensor";
    EXPECT_EQ(Entry(255).stir.sensorType, kTemperature);
    EXPECT_EQ(Entry(256).stir.LowerCriticalThreshold, 2) << "the index's low byte";
}

TEST_F(Repository, WithoutACountOrAControllerThereIsNoWalk) {
    EXPECT_EQ(Sensors().GetSensorNumbers(0), -1);
    EXPECT_EQ(Sensors().GetSensorNumbers(-3), -1);
    InitOK = 0;
    EXPECT_EQ(Sensors().GetSensorNumbers(1), -1);
    EXPECT_EQ(Sensors().SensorsInformation, nullptr);
}

TEST_F(Repository, AnotherWalkReplacesTheEntries) {
    Add(Temperature("A", 0x10), 0);
    Walk(1);
    Add(Temperature("B", 0x20), 0);
    Walk(2);
    EXPECT_STREQ(Entry(1).IDString, "B");
}

}  // namespace
