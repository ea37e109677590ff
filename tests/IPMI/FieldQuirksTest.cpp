// SPDX-License-Identifier: MIT
//
// Repositories and readings that are not as they should be, and what the library makes of them.

#include "FieldQuirkTest.h"

namespace {

using ::testing::ElementsAre;

class RepositoryQuirkTest : public FieldQuirkTest {};

TEST_F(RepositoryQuirkTest, ACountTooHighKeepsEachSensorOnce) {
    Describe("repository count 5\n" + Temperature(0, "A") + Temperature(1, "B"));
    EXPECT_THAT(Names(), ElementsAre("A", "B"));
    EXPECT_EQ(Requests("Get SDR"), 2U) << "none after the last record";
    SensorThresholdInformation thresholds{};
    EXPECT_EQ(GetAllThresholdInfo(&thresholds), 0);
    EXPECT_EQ(thresholds.quantity, 5) << "the count, not the sensors";
    EXPECT_EQ(thresholds.SensorThreshold[1].DeviceID, 3);
    EXPECT_EQ(thresholds.SensorThreshold[2].DeviceID, 0);
}

TEST_F(RepositoryQuirkTest, ACountTooLowLosesTheLastSensors) {
    Describe("repository count 2\n" + Temperature(0, "A") + Temperature(1, "B") +
             Temperature(2, "C"));
    EXPECT_THAT(Names(), ElementsAre("A", "B"));
    EXPECT_EQ(Requests("Get SDR"), 2U);
}

TEST_F(RepositoryQuirkTest, ACountOfNoneFailsAndIsNotBusyAfterwards) {
    Describe("repository count 0\n" + Temperature(0, "A"));
    (void)Names();
    EXPECT_EQ(result, -1);
    (void)Names();
    EXPECT_EQ(result, -1);
    EXPECT_EQ(Requests("Get SDR"), 0U);
}

TEST_F(RepositoryQuirkTest, ARecordShorterThanItSaysLosesItsNameUnitAndFactors) {
    Describe(Temperature(0x10, "A", " delivered 20\n") + Temperature(0x11, "B") +
             "reading 0x10 42\nreading 0x11 43\n");
    EXPECT_THAT(Names(), ElementsAre("", "B"));
    EXPECT_EQ(record.temperature[0].sensorNumber, 0x10);
    EXPECT_STREQ(record.temperature[0].CurrentTemperature, "0.00unspecified");
    EXPECT_STREQ(record.temperature[1].CurrentTemperature, "43.00degree C");
}

TEST_F(RepositoryQuirkTest, ARecordOfTheHeaderAloneIsASensorOfNoKind) {
    Describe(Temperature(0x10, "A", " delivered 5\n") + Temperature(0x11, "B"));
    EXPECT_THAT(Names(), ElementsAre("B"));
}

TEST_F(RepositoryQuirkTest, ARecordWithoutItsTypeIsSkipped) {
    Describe(Temperature(0x10, "A", " delivered 3\n") + Temperature(0x11, "B"));
    EXPECT_THAT(Names(), ElementsAre("B"));
    SensorThresholdInformation thresholds{};
    EXPECT_EQ(GetAllThresholdInfo(&thresholds), 0);
    EXPECT_EQ(thresholds.SensorThreshold[0].DeviceID, 3) << "B comes first";
}

// Byte 50 is the third character of the name.
TEST_F(RepositoryQuirkTest, ARecordThatChangesIsKeptAsItWasFirstRead) {
    Describe(Temperature(0x10, "FAN", " reread 50 0x54\n"));
    EXPECT_THAT(Names(), ElementsAre("FAN"));
    EXPECT_THAT(Names(), ElementsAre("FAN"));
    EXPECT_EQ(Requests("Get SDR"), 1U) << "the repository is read once";
}

TEST_F(RepositoryQuirkTest, ARecordThatChangedIsSeenByTheNextWalk) {
    Describe(Temperature(0x10, "FAN", " reread 50 0x54\n"));
    IPMIsupport support;
    char name[64] = {};
    EXPECT_EQ(support.GetSensorInfo(), 0);
    EXPECT_EQ(support.GetTemperatureIDString(0, name), 0);
    EXPECT_STREQ(name, "FAN");
    EXPECT_EQ(support.GetSensorInfo(), 0);
    EXPECT_EQ(support.GetTemperatureIDString(0, name), 0);
    EXPECT_STREQ(name, "FAT");
    EXPECT_EQ(support.GetTemSensorsNum(), 2) << "counted again";
}

TEST_F(RepositoryQuirkTest, RecordsOfOtherTypesTakeTheirPlaceInTheCountOnly) {
    Describe("record 0x12 20 00 00 00\n" + Temperature(0x10, "A") + "record 0xC0 57 01 00\n" +
             Temperature(0x11, "B") + "repository count 3\n");
    EXPECT_THAT(Names(), ElementsAre("A")) << "three records: two of them no sensors";
}

TEST_F(RepositoryQuirkTest, NextRecordsInALoopEndWithTheCount) {
    Describe("repository count 5\nrepository next 1 0\n" + Temperature(0x10, "A") +
             Temperature(0x11, "B"));
    EXPECT_THAT(Names(), ElementsAre("A", "B", "A", "B", "A"));
}

TEST_F(RepositoryQuirkTest, ARecordThatIsItsOwnNextIsKeptAsOftenAsTheCountSays) {
    Describe("repository next 1 1\n" + Temperature(0x10, "A") + Temperature(0x11, "B") +
             Temperature(0x12, "C"));
    EXPECT_THAT(Names(), ElementsAre("A", "B", "B"));
}

TEST_F(RepositoryQuirkTest, TheEndAtOnceKeepsTheFirstSensor) {
    Describe("repository next 0 0xFFFF\n" + Temperature(0x10, "A") + Temperature(0x11, "B"));
    EXPECT_THAT(Names(), ElementsAre("A"));
}

// An answer of zeros names record 0 as the next one.
TEST_F(RepositoryQuirkTest, ARecordRequestThatFailsStartsTheWalkOver) {
    Describe("fault \"Get SDR\" 2 fails\n" + Temperature(0x10, "A") + Temperature(0x11, "B") +
             Temperature(0x12, "C"));
    EXPECT_THAT(Names(), ElementsAre("A", "A"));
}

TEST_F(RepositoryQuirkTest, ARefusedRecordRequestStartsTheWalkOver) {
    Describe("fault \"Get SDR\" 2 refused 0xC5\n" + Temperature(0x10, "A") +
             Temperature(0x11, "B") + Temperature(0x12, "C"));
    EXPECT_THAT(Names(), ElementsAre("A", "A"));
}

TEST_F(RepositoryQuirkTest, AnEmptyAnswerToTheCountIsACountOfNone) {
    Describe("fault \"Get SDR Repository Info\" 1 empty\n" + Temperature(0x10, "A"));
    (void)Names();
    EXPECT_EQ(result, -1);
    EXPECT_THAT(Names(), ElementsAre("A")) << "the next query asks again";
}

class ReadingQuirkTest : public FieldQuirkTest {};

TEST_F(ReadingQuirkTest, ReadingFollowsTheMachinesTime) {
    Describe(Temperature(0x10, "A") + "reading 0x10 20\nreading 0x10 at 5 80\n");
    EXPECT_EQ(Reading(), "20.00degree C");
    (void)server->GetMachine().Sleep(5);
    EXPECT_EQ(Reading(), "80.00degree C");
}

TEST_F(ReadingQuirkTest, ReadingFollowsTheControlFile) {
    Describe(Temperature(0x10, "A") + "reading 0x10 20\ncontrol live\n");
    EXPECT_EQ(Reading(), "20.00degree C");
    folder->Write("live", "reading 0x10 90\n");
    EXPECT_EQ(Reading(), "90.00degree C");
}

// The library takes the reading's byte and does not look at the flags after it.
TEST_F(ReadingQuirkTest, UnavailableReadingIsTheByteThatCameWithIt) {
    Describe(Temperature(0x10, "A") + "reading 0x10 unavailable\n");
    EXPECT_EQ(Reading(), "0.00degree C");
}

TEST_F(ReadingQuirkTest, UnavailableReadingOfAllOnesIsUnknown) {
    Describe(Temperature(0x10, "A") + "reading 0x10 unavailable 0xFF\n");
    EXPECT_EQ(Reading(), "Unknown");
}

TEST_F(ReadingQuirkTest, RefusedFailedOrEmptyReadingIsZero) {
    Describe(Temperature(0x10, "A") +
             "reading 0x10 42\nfault \"Get Sensor Reading\" 1 refused 0xCB\n"
             "fault \"Get Sensor Reading\" 3 fails EBUSY\nfault \"Get Sensor Reading\" 5 empty\n");
    EXPECT_EQ(Reading(), "0.00degree C");
    EXPECT_EQ(Reading(), "0.00degree C");
    EXPECT_EQ(Reading(), "0.00degree C");
    EXPECT_EQ(Reading(), "42.00degree C");
    EXPECT_EQ(Requests("Get Sensor Reading"), 8U) << "a reading and a state for each";
}

// The request before is that of the thresholds, whose first byte says which can be read.
TEST_F(ReadingQuirkTest, StaleReadingIsTheAnswerToTheRequestBefore) {
    Describe(Temperature(0x10, "A") +
             "reading 0x10 42\nthresholds 0 0x3F 1 2 3 4 5 6\n"
             "fault \"Get Sensor Reading\" 1 stale\n");
    EXPECT_EQ(Reading(), "63.00degree C");
}

TEST_F(ReadingQuirkTest, ReadingWithoutAUnitIsUnspecifiedAndCutToItsField) {
    Describe(Temperature(0x10, "A", " unit 0\n") + "reading 0x10 42\n");
    EXPECT_EQ(Reading(), "42.00unspecifie");
}

TEST_F(ReadingQuirkTest, ReadingWithAUnitPastTheTableHasNoUnit) {
    Describe(Temperature(0x10, "A", " unit 91\n") + "reading 0x10 42\n");
    EXPECT_EQ(Reading(), "42.00");
}

TEST_F(ReadingQuirkTest, FanWithoutAUnitIsInPercentOfTheHighestReading) {
    Describe("sensor 0x30 \"FAN\"\n type 4\n limits 200 0\nreading 0x30 50\n");
    EXPECT_EQ(Speed(), "25%");
}

TEST_F(ReadingQuirkTest, FanWithoutAUnitAndAHighestReadingIsUnknown) {
    Describe("sensor 0x30 \"FAN\"\n type 4\n limits 0 0\nreading 0x30 50\n");
    EXPECT_EQ(Speed(), "Unknown");
}

}  // namespace
