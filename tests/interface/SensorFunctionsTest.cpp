// SPDX-License-Identifier: MIT
//
// GetIpmiInfo: its guards, the reading of the repository and the records.

#include <cstring>
#include <string>

#include "Talvane.h"
#include "support/FieldTable.h"
#include "support/IpmiTest.h"

namespace {

// A record, and bytes after it that no call may touch.
template <class Record>
struct Guarded {
    Record record;
    unsigned char after[16];

    Guarded() {
        std::memset(&record, 0, sizeof record);
        std::memset(after, 0xA5, sizeof after);
    }
    bool IsIntact() const {
        for (const unsigned char byte : after)
            if (byte != 0xA5) return false;
        return true;
    }
};

class SensorQueryTest : public IpmiTest {
protected:
    std::size_t Walks() const { return bmc.Count("Get SDR Repository Info"); }
    Guarded<FanInformation> fans;
    Guarded<VoltageInformation> voltages;
    Guarded<TemperatureInformation> temperatures;
};

TEST_F(SensorQueryTest, IpmiIsSupportedWhereAnInterfaceAnswers) {
    EXPECT_EQ(IsIpmiSupport(), 1);
}

TEST_F(SensorQueryTest, AFanFillsItsElement) {
    Add(Fan("FAN 1", 0x30).Entity(29, 1), 70);
    bmc.SetThresholds(0, {0x3F, {10, 8, 6, 100, 110, 120}});
    ASSERT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0);
    EXPECT_EQ(fans.record.quantity, 1);
    const FAN_DEVICE& fan = fans.record.fan[0];
    EXPECT_STREQ(fan.speed, "3500RPM");
    ExpectNumbers({
        {"sensorNumber", fan.sensorNumber, 0x30},
        {"DeviceID", fan.DeviceID, 29},
        {"SensorType", fan.SensorType, kFan},
    });
    ExpectTexts({
        {"desc", fan.desc, ""},
        {"IdString", fan.IdString, "FAN 1"},
        {"min", fan.min, ""},
        {"max", fan.max, ""},
    });
    ExpectNumbers({
        {"status", fan.status, 0},
        {"sti.DeviceID", fan.sti.DeviceID, 29},
        {"sti.SensorType", fan.sti.SensorType, kFan},
        {"sti.LowerNonCriticalThreshold", fan.sti.LowerNonCriticalThreshold, 500.0},
        {"sti.LowerCriticalThreshold", fan.sti.LowerCriticalThreshold, 400.0},
        {"sti.LowerNonRecoverThreshold", fan.sti.LowerNonRecoverThreshold, 300.0},
        {"sti.UpperNonCriticalThresholdValue", fan.sti.UpperNonCriticalThresholdValue, 5000.0},
        {"sti.UpperCriticalThresholdValue", fan.sti.UpperCriticalThresholdValue, 5500.0},
        {"sti.UpperNonRecoverThresholdValue", fan.sti.UpperNonRecoverThresholdValue, 6000.0},
        {"sti.MaxThreshold", fan.sti.MaxThreshold, 0.0},
        {"sti.readableFlag", fan.sti.readableFlag, 0},  // untouched
    });
    EXPECT_TRUE(fans.IsIntact());
}

TEST_F(SensorQueryTest, AVoltageFillsItsElementWithLimits) {
    Add(Voltage("3.3V", 0x20).Entity(10, 1).Limits(250, 10), 165);
    ASSERT_EQ(GetIpmiInfo(TALVANE_VOLTAGES, &voltages.record), 0);
    EXPECT_EQ(voltages.record.quantity, 1);
    const VOLTAGE_PROBE& voltage = voltages.record.voltage[0];
    ExpectTexts({
        {"CurrentVoltage", voltage.CurrentVoltage, "3.30V"},
        {"max", voltage.max, "5.00"},
        {"min", voltage.min, "0.20"},
    });
    ExpectNumbers({
        {"sensorNumber", voltage.sensorNumber, 0x20},
        {"DeviceID", voltage.DeviceID, 10},
        {"SensorType", voltage.SensorType, kVoltage},
    });
    EXPECT_STREQ(voltage.IdString, "3.3V");
}

TEST_F(SensorQueryTest, ATemperatureFillsItsElementWithItsState) {
    Add(Temperature("CPU", 0x10).Entity(3, 1).Event(7), 42);
    bmc.SetStates(0x10, 0x04);
    ASSERT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures.record), 0);
    EXPECT_EQ(temperatures.record.quantity, 1);
    const TEMPERATURE_PROBE& temperature = temperatures.record.temperature[0];
    EXPECT_STREQ(temperature.CurrentTemperature, "42.00degree C");
    EXPECT_STREQ(temperature.desc, "transition to Critical from less servere");
    ExpectNumbers({
        {"sensorNumber", temperature.sensorNumber, 0x10},
        {"DeviceID", temperature.DeviceID, 3},
        {"SensorType", temperature.SensorType, kTemperature},
    });
    EXPECT_STREQ(temperature.IdString, "CPU");
}

TEST_F(SensorQueryTest, TwentyFansAreCountedAndSixteenFilled) {
    for (int i = 1; i <= 20; ++i)
        Add(Fan("FAN" + std::to_string(i), static_cast<std::uint8_t>(i)), 70);
    ASSERT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0);
    EXPECT_EQ(fans.record.quantity, 20);
    EXPECT_STREQ(fans.record.fan[15].IdString, "FAN16");
    EXPECT_TRUE(fans.IsIntact());
}

TEST_F(SensorQueryTest, FortyVoltagesAndTemperaturesFillThirtyTwo) {
    for (int i = 1; i <= 40; ++i) {
        const auto number = static_cast<std::uint8_t>(i);
        Add(Voltage("V" + std::to_string(i), number), 165);
        Add(Temperature("T" + std::to_string(i), number), 165);
    }
    ASSERT_EQ(GetIpmiInfo(TALVANE_VOLTAGES, &voltages.record), 0);
    ASSERT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures.record), 0);
    EXPECT_EQ(voltages.record.quantity, 40);
    EXPECT_STREQ(voltages.record.voltage[31].IdString, "V32");
    EXPECT_TRUE(voltages.IsIntact());
    EXPECT_EQ(temperatures.record.quantity, 40);
    EXPECT_STREQ(temperatures.record.temperature[31].IdString, "T32");
    EXPECT_TRUE(temperatures.IsIntact());
}

TEST_F(SensorQueryTest, VoltagesAndTemperaturesCarryTheThresholdsOfTheFirst) {
    Add(Voltage("V1", 0x20).Entity(10), 1);     // entry 0
    Add(Voltage("V2", 0x21).Entity(7), 1);      // entry 1
    Add(Temperature("T1", 0x10).Entity(3), 1);  // entry 2
    Add(Temperature("T2", 0x11).Entity(7), 1);  // entry 3
    for (std::uint8_t k = 0; k < 4; ++k)
        bmc.SetThresholds(k, {0x3F, {k, k, k, k, k, static_cast<std::uint8_t>(50 + k)}});
    ASSERT_EQ(GetIpmiInfo(TALVANE_VOLTAGES, &voltages.record), 0);
    ASSERT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures.record), 0);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(voltages.record.voltage[i].sti.UpperNonRecoverThresholdValue, 1.0) << i;
        EXPECT_EQ(voltages.record.voltage[i].sti.DeviceID, 10) << i;
        EXPECT_EQ(temperatures.record.temperature[i].sti.UpperNonRecoverThresholdValue, 52.0) << i;
        EXPECT_EQ(temperatures.record.temperature[i].sti.DeviceID, 3) << i;
    }
    EXPECT_EQ(voltages.record.voltage[1].DeviceID, 7) << "its own entity";
}

TEST_F(SensorQueryTest, FansCarryTheirOwnThresholds) {
    Add(Fan("F1", 0x30), 1);
    Add(Fan("F2", 0x31), 1);
    bmc.SetThresholds(0, {0x3F, {1, 1, 1, 1, 1, 1}});
    bmc.SetThresholds(1, {0x3F, {2, 2, 2, 2, 2, 2}});
    ASSERT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0);
    EXPECT_EQ(fans.record.fan[0].sti.LowerCriticalThreshold, 50.0);
    EXPECT_EQ(fans.record.fan[1].sti.LowerCriticalThreshold, 100.0);
}

TEST_F(SensorQueryTest, TextsAreCutToTheirFields) {
    Add(Temperature("T", 0x10).Unit(65).Factors(100, 0, 0, 1), 200);
    Add(Voltage("V", 0x20).Factors(511, 0, 0, 7).Linearization(9).Limits(0xFE, 0xFD), 200);
    ASSERT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures.record), 0);
    ASSERT_EQ(GetIpmiInfo(TALVANE_VOLTAGES, &voltages.record), 0);
    EXPECT_STREQ(temperatures.record.temperature[0].CurrentTemperature, "200000.00color ");
    EXPECT_EQ(std::strlen(voltages.record.voltage[0].CurrentVoltage), 15u);
    EXPECT_EQ(std::strlen(voltages.record.voltage[0].max), 15u);
    EXPECT_EQ(std::strlen(voltages.record.voltage[0].min), 15u);
    EXPECT_STREQ(voltages.record.voltage[0].IdString, "V");
}

TEST_F(SensorQueryTest, UntouchedFieldsStayAsTheCallerGaveThem) {
    Add(Fan("F", 0x30), 70);
    std::memset(&fans.record, 0x5A, sizeof fans.record);
    ASSERT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0);
    const FAN_DEVICE& fan = fans.record.fan[0];
    EXPECT_EQ(fan.status, 0x5A);
    EXPECT_EQ(fan.min[0], 0x5A);
    EXPECT_EQ(fan.max[0], 0x5A);
    EXPECT_EQ(fan.speed[8], 0x5A) << "after the terminator";
    EXPECT_EQ(fan.sti.readableFlag, 0x5A);
    EXPECT_EQ(fan.sti.MaxThreshold, 0.0) << "written, though no threshold";
    EXPECT_EQ(fan.sti.MinThreshold, 0.0);
    EXPECT_EQ(fans.record.fan[1].sensorNumber, 0x5A);
}

TEST_F(SensorQueryTest, UntouchedFieldsOfVoltagesAndTemperaturesStayToo) {
    Add(Voltage("V", 0x20), 165);
    Add(Temperature("T", 0x10), 42);
    std::memset(&voltages.record, 0x5A, sizeof voltages.record);
    std::memset(&temperatures.record, 0x5A, sizeof temperatures.record);
    ASSERT_EQ(GetIpmiInfo(TALVANE_VOLTAGES, &voltages.record), 0);
    ASSERT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures.record), 0);
    EXPECT_EQ(voltages.record.voltage[0].status, 0x5A);
    EXPECT_EQ(voltages.record.voltage[0].sti.settableFlag, 0x5A);
    EXPECT_EQ(voltages.record.voltage[1].sensorNumber, 0x5A);
    const TEMPERATURE_PROBE& temperature = temperatures.record.temperature[0];
    EXPECT_EQ(temperature.status, 0x5A);
    EXPECT_EQ(std::string(temperature.min, 16), std::string(16, 0x5A));
    EXPECT_EQ(std::string(temperature.max, 16), std::string(16, 0x5A));
    EXPECT_EQ(temperature.sti.settableFlag, 0x5A);
    EXPECT_EQ(temperatures.record.temperature[1].sensorNumber, 0x5A);
}

TEST_F(SensorQueryTest, TheRepositoryIsReadOnce) {
    Add(Fan("F", 0x30), 70);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0);
    EXPECT_EQ(Walks(), 1u);
    EXPECT_EQ(fans.record.quantity, 1);
}

TEST_F(SensorQueryTest, AKindWithoutSensorsFailsAndWritesNothing) {
    Add(Fan("F", 0x30), 70);
    voltages.record.quantity = 77;
    EXPECT_EQ(GetIpmiInfo(TALVANE_VOLTAGES, &voltages.record), -1);
    EXPECT_EQ(voltages.record.quantity, 77);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0) << "not busy";
}

TEST_F(SensorQueryTest, OtherCommandsSucceedAndWriteNothing) {
    Add(Fan("F", 0x30), 70);
    fans.record.quantity = 77;
    for (const unsigned long command : {0ul, TALVANE_BOARD, 0x6000000ul, 0xFFFFFFFFul})
        EXPECT_EQ(GetIpmiInfo(command, &fans.record), 0) << command;
    EXPECT_EQ(fans.record.quantity, 77);
    EXPECT_EQ(Walks(), 1u) << "the repository is read all the same";
}

TEST_F(SensorQueryTest, AnEmptyRepositoryFailsEveryTimeAndIsReadEveryTime) {
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), -1);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), -1);
    EXPECT_EQ(Walks(), 2u);
    Add(Fan("F", 0x30), 70);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0);
}

int answerWithinQuery = 77;

TEST_F(SensorQueryTest, ANestedCallIsBusy) {
    Add(Fan("F", 0x30), 70);
    server.During("ioctl", [] {
        FanInformation inner{};
        answerWithinQuery = GetIpmiInfo(TALVANE_FANS, &inner);
    });
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0);
    EXPECT_EQ(answerWithinQuery, 1);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0);
}

TEST_F(SensorQueryTest, AnInventoryQueryMayRunInside) {
    Add(Fan("F", 0x30), 70);
    server.During("ioctl", [] {
        SysInformation inner{};
        answerWithinQuery = GetInfo(TALVANE_SYSTEM, &inner);
    });
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans.record), 0);
    EXPECT_EQ(answerWithinQuery, -1) << "no SMBIOS here, and not busy";
}

}  // namespace
