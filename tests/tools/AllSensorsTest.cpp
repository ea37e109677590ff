// SPDX-License-Identifier: MIT
//
// Every sensor of a simulated controller, also of one that answers wrongly.

#include <gmock/gmock.h>

#include "SensorExamples.h"
#include "support/IpmiTest.h"
#include "tools/records/Sensors.h"

namespace tool {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Status = SensorAnswer::Status;

class AllSensorsTest : public IpmiTest {
protected:
    // The bytes after the header of a compact record of one discrete sensor.
    static sim::Bytes Compact(std::uint8_t number, std::uint8_t type, std::uint8_t owner = 0x20) {
        sim::Bytes record(5 + 27 + 1, 0);
        record[2] = 0x51;
        record[3] = 2;
        record[4] = 28;
        record[5] = owner;
        record[7] = number;
        record[8] = 10;
        record[9] = 1;
        record[12] = type;
        record[13] = 0x6F;
        record[18] = 0xFF;
        record[31] = 0xC1;
        record[32] = 'P';
        return record;
    }
};

TEST_F(AllSensorsTest, ListsFullAndCompactRecordsAndMoreThanTheLibraryLists) {
    for (int i = 0; i < 20; ++i)
        Add(Fan("FAN " + std::to_string(i), static_cast<std::uint8_t>(i)).Entity(29), 70);
    bmc.AddRecord(Compact(0x40, 8));
    bmc.SetStates(0x40, 0x09);
    const auto all = ReadSensors();
    ASSERT_TRUE(all.has_value());
    EXPECT_EQ(all->records, 21);
    EXPECT_TRUE(all->isComplete);
    ASSERT_THAT(all->sensors, SizeIs(21));
    EXPECT_EQ(all->sensors[19].record.name, "FAN 19");
    EXPECT_EQ(all->sensors[19].value, 3500.0) << "50 turns a count";
    EXPECT_EQ(all->sensors[20].record.name, "P");
    EXPECT_EQ(all->sensors[20].answer.states, 0x09U);
    EXPECT_FALSE(all->sensors[20].value.has_value());
}

TEST_F(AllSensorsTest, HaveTheThresholdsOfTheirNumberNow) {
    Add(Temperature("T", 0x10).Entity(3), 40);
    bmc.SetThresholds(0x10, {0x38, {0, 0, 0, 80, 90, 0xFF}});
    bmc.SetThresholds(0, {0x38, {0, 0, 0, 1, 2, 3}});
    EXPECT_THAT(ReadSensors()->sensors.at(0).limits,
                ElementsAre(std::nullopt, std::nullopt, std::nullopt, 80.0, 90.0, 255.0))
        << "a last byte of FF has arrived, too";
    bmc.SetReading(0x10, 41);
    bmc.SetThresholds(0x10, {0x08, {0, 0, 0, 70, 0, 0}});
    const SensorNow again = ReadSensors()->sensors.at(0);
    EXPECT_EQ(again.value, 41.0);
    EXPECT_EQ(again.limits[3], 70.0);
}

TEST_F(AllSensorsTest, AreNotReadWhenTheBmcFlagsThemOrDoesNotAnswer) {
    Add(Temperature("Flagged", 1).Entity(3), 40);
    Add(Temperature("Fine", 2).Entity(3), 0);
    bmc.SetUnavailable(1);
    auto sensors = ReadSensors()->sensors;
    EXPECT_EQ(sensors[0].answer.status, Status::kUnavailable);
    EXPECT_FALSE(sensors[0].value.has_value());
    EXPECT_EQ(sensors[1].answer.status, Status::kRead) << "a reading of 0";
    EXPECT_EQ(sensors[1].value, 0.0);
    bmc.Inject("Get Sensor Reading", sim::BmcFault::Kind::kRefused, 0xC0);
    sensors = ReadSensors()->sensors;
    EXPECT_EQ(sensors[1].answer.status, Status::kNoAnswer);
    EXPECT_STREQ(WhyNoReading(sensors[1]), "no answer");
}

TEST_F(AllSensorsTest, AreNotReadWhenTheAnswerHasNoFlags) {
    Add(Temperature("T", 1).Entity(3), 0xFF);
    bmc.Inject("Get Sensor Reading", sim::BmcFault::Kind::kCut, 1);
    EXPECT_EQ(ReadSensors()->sensors[0].answer.status, Status::kNoAnswer);
}

TEST_F(AllSensorsTest, HaveNoStatesWhenTheAnswerEndsBeforeThem) {
    bmc.AddRecord(Compact(0x40, 8));
    bmc.Inject("Get Sensor Reading", sim::BmcFault::Kind::kCut, 2);
    const SensorNow sensor = ReadSensors()->sensors[0];
    EXPECT_EQ(sensor.answer.status, Status::kRead);
    EXPECT_FALSE(sensor.answer.states.has_value());
}

TEST_F(AllSensorsTest, HaveNoThresholdsWhenTheBmcRefusesThem) {
    Add(Temperature("T", 1).Entity(3), 40);
    bmc.SetThresholds(1, {0x38, {0, 0, 0, 80, 90, 100}});
    bmc.Inject("Get Sensor Thresholds", sim::BmcFault::Kind::kRefused, 0xC0);
    EXPECT_EQ(ReadSensors()->sensors[0].limits, Limits{});
}

TEST_F(AllSensorsTest, OfOtherControllersAreListedAndNotAskedFor) {
    bmc.AddRecord(Compact(0x40, 8, 0x2C));
    const auto all = ReadSensors();
    ASSERT_THAT(all->sensors, SizeIs(1));
    EXPECT_EQ(all->sensors[0].answer.status, Status::kOther);
    EXPECT_EQ(bmc.Count("Get Sensor Reading"), 0U);
}

TEST_F(AllSensorsTest, ThatSendEventsOnlyAreListedAndNotAskedFor) {
    bmc.AddRecord(EventOnlyRecord());
    const auto all = ReadSensors();
    ASSERT_THAT(all->sensors, SizeIs(1));
    EXPECT_EQ(all->sensors[0].record.name, "EV");
    EXPECT_EQ(all->sensors[0].answer.status, Status::kEventsOnly);
    EXPECT_STREQ(WhyNoReading(all->sensors[0]), "sends events only");
    EXPECT_EQ(bmc.Count("Get Sensor Reading"), 0U);
}

TEST_F(AllSensorsTest, AreReadOnceEachWhenTheRepositoryLeadsBackToItself) {
    Add(Temperature("A", 1).Entity(3), 40);
    Add(Temperature("B", 2).Entity(3), 40);
    bmc.SetNextRecord(1, 1);
    const auto all = ReadSensors();
    EXPECT_FALSE(all->isComplete);
    EXPECT_THAT(all->sensors, SizeIs(2));
}

TEST_F(AllSensorsTest, AreThoseBeforeARecordThatCannotBeRead) {
    Add(Temperature("A", 1).Entity(3), 40);
    Add(Temperature("B", 2).Entity(3), 40);
    bmc.Inject("Get SDR", sim::BmcFault::Kind::kRefused, 0xCB, 2);
    bmc.Inject("Get SDR", sim::BmcFault::Kind::kRefused, 0xCB, 3);
    const auto all = ReadSensors();
    EXPECT_FALSE(all->isComplete);
    EXPECT_THAT(all->sensors, SizeIs(1));
}

TEST_F(AllSensorsTest, AreNoneInARepositoryThatIsNotRead) {
    const auto all = ReadSensors();
    ASSERT_TRUE(all.has_value());
    EXPECT_THAT(all->sensors, IsEmpty());
    EXPECT_FALSE(all->isComplete);
}

}  // namespace
}  // namespace tool
