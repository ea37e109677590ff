// SPDX-License-Identifier: MIT
//
// Current readings as texts.

#include <cmath>
#include <cstdio>

#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class ReadingTest : public IpmiTest {
protected:
    // Text of the first voltage, temperature, fan.
    Answer VoltageText() { return Ask(&Sensor::GetVoltageCurrent, 0); }
    Answer TemperatureText() { return Ask(&Sensor::GetTemperatureCurrent, 0); }
    Answer FanText() { return Ask(&Sensor::GetFanSpeed, 0); }

    const Answer unknown = Terminated("Unknown");
};

TEST_F(ReadingTest, ReadingHasTwoDecimalsAndTheUnit) {
    Add(Voltage("V", 0x20), 165);
    Add(Temperature("T", 0x21), 42);
    Loaded();
    bmc.ForgetRequests();
    EXPECT_EQ(VoltageText(), Terminated("3.30V"));
    EXPECT_EQ(TemperatureText(), Terminated("42.00degree C"));
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get Sensor Reading 20", "Get Sensor Reading 21"));
}

TEST_F(ReadingTest, ReadingOfAllOnesIsUnknown) {
    Add(Voltage("V", 0x20), 0xFF);
    Add(Temperature("T", 0x21), 0xFE);
    Loaded();
    EXPECT_EQ(VoltageText(), unknown);
    EXPECT_EQ(TemperatureText(), Terminated("254.00degree C"));
}

TEST_F(ReadingTest, ReadingWithoutAControllerIsUnknown) {
    Add(Voltage("V", 0x20), 165);
    Add(Fan("F", 0x30), 70);
    Loaded();
    InitOK = 0;
    EXPECT_EQ(VoltageText(), unknown);
    EXPECT_EQ(FanText(), unknown);
}

TEST_F(ReadingTest, SensorWithoutANumberIsUnknownWithoutARequest) {
    Add(Voltage("V", 0x20), 165);
    Loaded();
    Sensors().VSInfo.sd[0].SensorNumbers = 0xFF;
    bmc.ForgetRequests();
    EXPECT_EQ(VoltageText(), unknown);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

TEST_F(ReadingTest, ReadingOutsideOfItsFunctionIsWrittenAsNoNumber) {
    Add(Voltage("V", 0x20).Factors(-1, 0, 0, 0).Linearization(11), 5);
    Loaded();
    EXPECT_EQ(VoltageText(), Terminated("-nanV")) << "a root of a negative number";
}

TEST_F(ReadingTest, ReadingLongerThanItsFieldIsCut) {
    Add(Voltage("V", 0x20).Factors(1, 0, 0, 0).Linearization(5), 100);
    Loaded();
    char whole[200];
    std::snprintf(whole, sizeof whole, "%.2f", std::pow(10.0, 100.0));
    EXPECT_EQ(VoltageText(), Terminated(std::string(whole, 63))) << "of 101 digits";
}

// Processors that are not there.

class ProcessorPresenceTest : public ReadingTest {
protected:
    // A processor's temperature and the sensor of its presence, which has no analog reading.
    void AddProcessor(int states, int presenceInstance = 1, int event = 0x6F,
                      std::uint8_t presenceEntity = 3) {
        Add(Temperature("CPU", 0x10).Entity(3, 1), 42);
        const std::uint8_t instance = static_cast<std::uint8_t>(presenceInstance);
        bmc.SetStates(0x40, static_cast<std::uint8_t>(states));
        Add(sim::SdrRecord("P", 0x40)
                .Kind(kProcessor)
                .Entity(presenceEntity, instance)
                .Unit1(0xC0)
                .Event(static_cast<std::uint8_t>(event)),
            0);
        Loaded();
    }
    const Answer known = Terminated("42.00degree C");
};

TEST_F(ProcessorPresenceTest, SensorOfAPresentProcessorIsRead) {
    AddProcessor(0x80);
    EXPECT_EQ(TemperatureText(), known);
}

TEST_F(ProcessorPresenceTest, SensorOfAnAbsentProcessorIsUnknown) {
    AddProcessor(0x7F);
    EXPECT_EQ(TemperatureText(), unknown);
}

TEST_F(ProcessorPresenceTest, VoltagesAndFansOfAnAbsentProcessorAreUnknown) {
    Add(Voltage("VCORE", 0x20).Entity(3, 1), 165);
    Add(Fan("CPU FAN", 0x30).Entity(3, 1), 70);
    AddProcessor(0x7F);
    EXPECT_EQ(VoltageText(), unknown);
    EXPECT_EQ(FanText(), unknown);
}

TEST_F(ProcessorPresenceTest, ThePresenceSensorsOwnEntityDoesNotMatter) {
    AddProcessor(0x7F, 1, 0x6F, 7);
    EXPECT_EQ(TemperatureText(), unknown);
}

TEST_F(ProcessorPresenceTest, AnotherProcessorsAbsenceDoesNotMatter) {
    AddProcessor(0x00, 2);
    EXPECT_EQ(TemperatureText(), known);
}

TEST_F(ProcessorPresenceTest, OnlySensorSpecificStatesShowThePresence) {
    AddProcessor(0x00, 1, 0x03);
    EXPECT_EQ(TemperatureText(), known);
}

TEST_F(ProcessorPresenceTest, OnlyProcessorsAreLookedAt) {
    AddProcessor(0x00);
    Sensors().TSInfo.sd[0].SensorEntityID = 7;
    EXPECT_EQ(TemperatureText(), known);
}

TEST_F(ProcessorPresenceTest, OnlyTheTablesOwnEntriesAreLookedAt) {
    AddProcessor(0x00);
    Sensors().PSInfo.quantity = 0;
    EXPECT_EQ(TemperatureText(), known);
    Sensors().PSInfo.quantity = 1000;
    EXPECT_EQ(TemperatureText(), unknown);
}

// Sensors that tell their availability.

class AvailabilityTest : public ReadingTest {};

TEST_F(AvailabilityTest, RunningOrOnLineFanIsRead) {
    Add(Voltage("V", 0x20).Event(10), 165);
    Loaded();
    for (const int states : {0x01, 0x08, 0x09, 0xFF}) {
        bmc.SetStates(0x20, static_cast<std::uint8_t>(states));
        EXPECT_EQ(VoltageText(), Terminated("3.30V")) << states;
    }
}

TEST_F(AvailabilityTest, AnyOtherStateReadsUnknown) {
    Add(Voltage("V", 0x20).Event(10), 165);
    Add(Fan("F", 0x30).Event(10), 70);
    Loaded();
    for (const int states : {0x00, 0x02, 0xF6}) {
        bmc.SetStates(0x20, static_cast<std::uint8_t>(states));
        bmc.SetStates(0x30, static_cast<std::uint8_t>(states));
        EXPECT_EQ(VoltageText(), unknown) << states;
        EXPECT_EQ(FanText(), unknown) << states;
    }
}

TEST_F(AvailabilityTest, AvailabilityThatCannotBeReadIsUnknown) {
    Add(Voltage("V", 0x20).Event(10), 165);
    bmc.SetStates(0x20, 0x01);
    Loaded();
    server.During("ioctl", [] { InitOK = 0; });  // within the request for the reading
    EXPECT_EQ(VoltageText(), unknown);
}

TEST_F(AvailabilityTest, AvailabilityIsAskedForBeforeAReadingOfAllOnesIsReported) {
    Add(Voltage("V", 0x20).Event(10), 0xFF);
    bmc.SetStates(0x20, 0x01);
    Loaded();
    bmc.ForgetRequests();
    EXPECT_EQ(VoltageText(), unknown);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get Sensor Reading 20", "Get Sensor Reading 20"));
}

// Fans.

class FanSpeedTest : public ReadingTest {};

TEST_F(FanSpeedTest, SpeedIsAWholeNumberWithTheUnit) {
    Add(Fan("F", 0x30), 70);
    Loaded();
    bmc.ForgetRequests();
    EXPECT_EQ(FanText(), Terminated("3500RPM"));
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get Sensor Reading 30", "Get Device ID"));
}

TEST_F(FanSpeedTest, FractionOfASpeedIsCutOff) {
    Add(Fan("F", 0x30).Factors(199, 0, 0, -2), 1);
    Loaded();
    EXPECT_EQ(FanText(), Terminated("1RPM"));
    Sensors().FSInfo.sd[0].sfp.M = -199;
    EXPECT_EQ(FanText(), Terminated("-1RPM")) << "toward zero";
}

TEST_F(FanSpeedTest, NegativeFactorMakesSpeedAndLimitNegative) {
    Add(Fan("F", 0x30).Factors(1, 0, 0, 0).Byte(24, 0xFF).Byte(25, 0xFF).Limits(200, 1), 50);
    Loaded();
    EXPECT_EQ(FanText(), Terminated("-50RPM"));
    EXPECT_STREQ(Sensors().FSInfo.sd[0].SensorReadingMax, "-200");
}

TEST_F(FanSpeedTest, ReadingOfAllOnesIsUnknownAfterTheAvailabilityIsAskedFor) {
    Add(Fan("F", 0x30).Event(10), 0xFF);
    bmc.SetStates(0x30, 0x01);
    Loaded();
    bmc.ForgetRequests();
    EXPECT_EQ(FanText(), unknown);
    EXPECT_THAT(bmc.Requests(), SizeIs(2)) << "reading and state";
    Sensors().FSInfo.sd[0].SensorEventReadingCode = 1;
    EXPECT_EQ(FanText(), unknown) << "whatever the type";
}

TEST_F(FanSpeedTest, SpeedWithoutAUnitIsInPercentOfTheHighestReading) {
    Add(Fan("F", 0x30).Unit(0).Limits(200, 0), 100);
    Loaded();
    bmc.ForgetRequests();
    EXPECT_EQ(FanText(), Terminated("50%"));
    EXPECT_THAT(bmc.Requests(), SizeIs(1)) << "the device ID is not asked for";
}

TEST_F(FanSpeedTest, SpeedWithoutAUnitAndAHighestReadingIsUnknown) {
    Add(Fan("F", 0x30).Unit(0).Limits(0, 0), 100);
    Loaded();
    EXPECT_EQ(FanText(), unknown);
}

TEST_F(FanSpeedTest, PercentageIsOfTheHighestReading) {
    Add(Fan("F", 0x30).Unit1(0x01).Limits(150, 0), 50);
    Loaded();
    bmc.ForgetRequests();
    EXPECT_EQ(FanText(), Terminated("33%"));
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get Sensor Reading 30", "Get Device ID"));
}

TEST_F(FanSpeedTest, PercentageIsDividedFirstAndThenTruncated) {
    Add(Fan("F", 0x30).Unit1(0x01).Factors(1, 0, 0, 0).Limits(100, 0), 29);
    Loaded();
    EXPECT_EQ(FanText(), Terminated("28%")) << "0.29 times 100 is a little below 29";
}

TEST_F(FanSpeedTest, PercentageWithoutAHighestReadingIsTheLowestNumber) {
    Add(Fan("F", 0x30).Unit1(0x01).Limits(0, 0), 50);
    Loaded();
    EXPECT_EQ(FanText(), Terminated("-2147483648%"));
}

TEST_F(FanSpeedTest, SpeedPastThirtyTwoBitsIsTheLowestNumber) {
    Add(Fan("F", 0x30).Factors(511, 0, 0, 7).Limits(200, 0), 200);
    Loaded();
    EXPECT_EQ(FanText(), Terminated("-2147483648RPM"));
    EXPECT_STREQ(Sensors().FSInfo.sd[0].SensorReadingMax, "-2147483648");
}

TEST_F(FanSpeedTest, AReadingOfZeroIsAnErrorStatus) {
    Add(Fan("F", 0x30), 0);
    Loaded();
    char status = 0;
    EXPECT_EQ(Support().GetFanStatus(0, status), 0);
    EXPECT_EQ(status, IPMIbase::STATUS_ERROR);
    bmc.SetReading(0x30, 1);
    EXPECT_EQ(Support().GetFanStatus(0, status), 0);
    EXPECT_EQ(status, IPMIbase::STATUS_NORMAL);
    InitOK = 0;
    EXPECT_EQ(Support().GetFanStatus(0, status), 0);
    EXPECT_EQ(status, IPMIbase::STATUS_ERROR);
}

TEST_F(FanSpeedTest, AFanWithoutAnalogReadingHasAStatus) {
    Add(Fan("F", 0x30).Unit1(0xC0), 50);
    Loaded();
    char status = 0;
    EXPECT_EQ(Support().GetFanStatus(0, status), 0);
    EXPECT_EQ(status, IPMIbase::STATUS_NORMAL);
}

}  // namespace
