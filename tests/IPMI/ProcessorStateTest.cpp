// SPDX-License-Identifier: MIT
//
// Which states of a processor's sensor say that the processor is present, and what is asked for
// when it is not.

#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;

class ProcessorStateTest : public IpmiTest {
protected:
    // The text of a temperature of processor 1, whose own sensor has these states.
    Answer TextWithStates(std::uint8_t states) {
        Add(Temperature("CPU", 0x10).Entity(3, 1), 42);
        AddProcessorOf(states);
        Loaded();
        return Ask(&Sensor::GetTemperatureCurrent, 0);
    }

    void AddProcessorOf(std::uint8_t states) {
        bmc.SetStates(0x40, states);
        Add(sim::SdrRecord("P", 0x40).Kind(kProcessor).Entity(3, 1).Unit1(0xC0).Event(0x6F), 0);
    }

    const Answer present = Terminated("42.00degree C");
    const Answer absent = Terminated("Unknown");
};

TEST_F(ProcessorStateTest, AllBitsSetMeansPresent) {
    EXPECT_EQ(TextWithStates(0xFF), present);
}

TEST_F(ProcessorStateTest, PresentWithAnotherStateIsPresent) {
    EXPECT_EQ(TextWithStates(0x81), present);
}

TEST_F(ProcessorStateTest, EveryStateWithBitSevenIsPresentAndNoOther) {
    (void)TextWithStates(0x80);
    for (int states = 0; states < 256; ++states) {
        Sensors().PSInfo.sd[0].SensorCodeOffset = static_cast<unsigned char>(states);
        EXPECT_EQ(Ask(&Sensor::GetTemperatureCurrent, 0), states >= 0x80 ? present : absent)
            << states;
    }
}

TEST_F(ProcessorStateTest, AnAbsentProcessorsSensorIsNotAskedForItsAvailability) {
    Add(Voltage("VCORE", 0x20).Entity(3, 1).Event(10), 165);
    Add(Fan("CPU FAN", 0x30).Entity(3, 1).Event(10), 70);
    AddProcessorOf(0x00);
    Loaded();
    bmc.ForgetRequests();
    EXPECT_EQ(Ask(&Sensor::GetVoltageCurrent, 0), absent);
    EXPECT_EQ(Ask(&Sensor::GetFanSpeed, 0), absent);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get Sensor Reading 20", "Get Sensor Reading 30"))
        << "the readings alone";
}

}  // namespace
