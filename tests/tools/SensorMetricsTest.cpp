// SPDX-License-Identifier: MIT
//
// Sensors as metrics: families and units, states, what a sensor without a reading has, and names.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MetricFormat.h"
#include "NoValue.h"
#include "SensorExamples.h"
#include "tools/metrics/SensorMetrics.h"
#include "tools/metrics/SensorTypeLabel.h"

namespace tool {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kCelsius = 1;
constexpr int kVolts = 4;

SensorNow Thermometer(int unit, double value, const Limits& limits = {}) {
    SensorNow sensor = ThresholdSensor("Sensor", value, limits);
    sensor.record.baseUnit = static_cast<unsigned char>(unit);
    return sensor;
}

SensorNow Supply(unsigned states) {
    SensorNow sensor = DiscreteSensor(8, kSensorSpecificEventType, states);
    sensor.record.name = "PSU";
    sensor.record.number = 0x51;
    sensor.record.entity = 10;
    sensor.record.instance = 2;
    return sensor;
}

MetricFile Metrics(const std::vector<SensorNow>& sensors, const Rules& rules = {},
                   bool isComplete = true) {
    MetricPage page;
    AddHealth(page, Judge({sensors, static_cast<int>(sensors.size()), isComplete}, rules));
    const MetricFile file = ParseMetrics(page.Text());
    EXPECT_THAT(file.problems, IsEmpty()) << page.Text();
    return file;
}

const Limits kUpperLimits = {kNoValue, kNoValue, kNoValue, 80.0, 90.0, kNoValue};

struct Family {
    int unit;
    double value;
    const char* valueName;
    const char* written;
    const char* stateName;
};

TEST(SensorMetricsTest, TheUnitDecidesOnTheFamilyInBaseUnits) {
    constexpr Family kFamilies[] = {
        {1, 42, "ipmi_temperature_celsius", "42", "ipmi_temperature_state"},
        {2, 212, "ipmi_temperature_celsius", "100", "ipmi_temperature_state"},
        {2, 14, "ipmi_temperature_celsius", "-10", "ipmi_temperature_state"},
        {3, 300, "ipmi_temperature_celsius", "26.85", "ipmi_temperature_state"},
        {4, 12.06, "ipmi_voltage_volts", "12.06", "ipmi_voltage_state"},
        {5, 0.4, "ipmi_current_amperes", "0.4", "ipmi_current_state"},
        {6, 250, "ipmi_power_watts", "250", "ipmi_power_state"},
        {18, 7200, "ipmi_fan_speed_rpm", "7200", "ipmi_fan_speed_state"},
        {19, 60, "ipmi_sensor_value", "60", "ipmi_sensor_state"},
    };
    for (const Family& family : kFamilies) {
        const MetricFile file = Metrics({Thermometer(family.unit, family.value)});
        EXPECT_EQ(file.Value(family.valueName, {{"id", "0x10"}, {"name", "Sensor"}}),
                  family.written);
        EXPECT_EQ(file.Value(family.stateName, {{"id", "0x10"}, {"name", "Sensor"}}), "0");
    }
}

TEST(SensorMetricsTest, APercentageOfAFanIsARatioAndOthersKeepTheirUnit) {
    SensorNow sensor = Thermometer(0, 40);
    sensor.record.unit1 = 0x01;
    sensor.record.type = 4;
    EXPECT_EQ(Metrics({sensor}).Value("ipmi_fan_speed_ratio"), "0.4");
    sensor.record.type = 0x0B;
    const MetricFile file = Metrics({sensor});
    EXPECT_EQ(file.Value("ipmi_sensor_value", {{"type", "Other Units Based Sensor"}}), "40");
    EXPECT_EQ(file.Value("talvane_sensor_info", {{"unit", "%"}}), "1");
}

TEST(SensorMetricsTest, AUnitWithARateOrAModifierIsNotThePlainUnit) {
    for (const int unit1 : {0x02, 0x04, 0x08, 0x28}) {
        SensorNow sensor = Thermometer(6, 40);
        sensor.record.unit1 = static_cast<unsigned char>(unit1);
        sensor.record.modifierUnit = 23;
        const MetricFile file = Metrics({sensor});
        EXPECT_EQ(file.Value("ipmi_power_watts"), "") << unit1;
        EXPECT_EQ(file.Value("ipmi_sensor_value"), "40") << unit1;
    }
}

TEST(SensorMetricsTest, TheStateIsTheVerdictAndRulesReplaceIt) {
    EXPECT_EQ(Metrics({Thermometer(kCelsius, 79, kUpperLimits)}).Value("ipmi_temperature_state"),
              "0");
    EXPECT_EQ(Metrics({Thermometer(kCelsius, 80, kUpperLimits)}).Value("ipmi_temperature_state"),
              "1");
    EXPECT_EQ(Metrics({Thermometer(kCelsius, 90, kUpperLimits)}).Value("ipmi_temperature_state"),
              "2");
    const Rules rules = ParseRules("sensor 0x10 state \"upper critical\" warning\n");
    const MetricFile file = Metrics({Thermometer(kCelsius, 90, kUpperLimits)}, rules);
    EXPECT_EQ(file.Value("ipmi_temperature_state"), "1");
    EXPECT_EQ(file.Value("talvane_sensor_verdict"), "1");
    EXPECT_EQ(file.Value("talvane_health_verdict"), "1");
}

TEST(SensorMetricsTest, ThresholdsAreInTheUnitOfTheReading) {
    const MetricFile celsius = Metrics({Thermometer(kCelsius, 42, kUpperLimits)});
    EXPECT_EQ(celsius.Value("talvane_temperature_threshold_celsius",
                            {{"id", "0x10"}, {"threshold", "upper non-critical"}}),
              "80");
    EXPECT_EQ(
        celsius.Value("talvane_temperature_threshold_celsius", {{"threshold", "upper critical"}}),
        "90");
    EXPECT_EQ(
        celsius.Value("talvane_temperature_threshold_celsius", {{"threshold", "lower critical"}}),
        "");
    EXPECT_EQ(
        Metrics({Thermometer(2, 100, {kNoValue, kNoValue, kNoValue, kNoValue, 212.0, kNoValue})})
            .Value("talvane_temperature_threshold_celsius"),
        "100");
    EXPECT_EQ(
        Metrics({Thermometer(kVolts, 12, {11.4, kNoValue, kNoValue, kNoValue, kNoValue, kNoValue})})
            .Value("talvane_voltage_threshold_volts", {{"threshold", "lower non-critical"}}),
        "11.4");
}

TEST(SensorMetricsTest, ASensorThatCannotBeReadHasNoValueAndNoState) {
    using Status = SensorAnswer::Status;
    for (const Status status :
         {Status::kNoAnswer, Status::kNotScanned, Status::kUnavailable, Status::kOther}) {
        const MetricFile file =
            Metrics({WithoutReading(Thermometer(kCelsius, 42, kUpperLimits), status)});
        EXPECT_EQ(file.Value("ipmi_temperature_celsius"), "");
        EXPECT_EQ(file.Value("ipmi_temperature_state"), "");
        EXPECT_EQ(file.Value("talvane_sensor_readable"), "0");
        EXPECT_EQ(file.Value("talvane_sensor_verdict"), "3");
        EXPECT_EQ(file.Value("talvane_sensor_problem_info", {{"verdict", "UNKNOWN"}}), "1");
        EXPECT_EQ(file.Value("talvane_health_verdict"), "3");
    }
}

TEST(SensorMetricsTest, ASensorOfAnAbsentPartIsNominalWithoutAValue) {
    SensorNow absent = Supply(0);
    SensorNow temperature =
        WithoutReading(Thermometer(kCelsius, 42), SensorAnswer::Status::kUnavailable);
    temperature.record.entity = absent.record.entity;
    temperature.record.instance = absent.record.instance;
    const MetricFile file = Metrics({absent, temperature});
    EXPECT_EQ(file.Value("ipmi_temperature_celsius"), "");
    EXPECT_EQ(file.Value("ipmi_temperature_state"), "0");
    EXPECT_EQ(file.Value("talvane_sensor_readable", {{"id", "0x10"}}), "0");
}

TEST(SensorMetricsTest, ADiscreteSensorHasAStateAndWhatIsAsserted) {
    const MetricFile file = Metrics({Supply(0x09)});
    EXPECT_EQ(file.Value("ipmi_sensor_state", {{"id", "0x51"}, {"type", "Power Supply"}}), "2");
    EXPECT_EQ(file.Value("ipmi_sensor_value"), "");
    EXPECT_EQ(file.Value("talvane_sensor_asserted", {{"state", "presence detected"}}), "1");
    EXPECT_EQ(file.Value("talvane_sensor_asserted", {{"state", "input lost"}}), "1");
    EXPECT_EQ(file.Value("talvane_sensor_problem_info", {{"reason", "input lost"}}), "1");
    EXPECT_EQ(file.Value("talvane_sensor_info", {{"entity", "power supply 2"}}), "1");
}

TEST(SensorMetricsTest, ADiscreteSensorWithoutAStateAssertsNone) {
    const MetricFile file = Metrics({Supply(0)});
    EXPECT_EQ(file.Value("talvane_sensor_asserted"), "");
    EXPECT_EQ(file.Value("ipmi_sensor_state"), "0") << "an empty bay";
}

TEST(SensorMetricsTest, ASensorThatIsNotJudgedHasNoVerdict) {
    SensorNow maker = Supply(0x04);
    maker.record.type = 0xC5;
    maker.record.eventType = 0x70;
    SensorNow events = WithoutReading(Supply(0), SensorAnswer::Status::kEventsOnly);
    events.record.number = 0x52;
    const MetricFile file = Metrics({maker, events});
    EXPECT_EQ(file.Value("talvane_sensor_verdict"), "");
    EXPECT_EQ(file.Value("ipmi_sensor_state"), "");
    EXPECT_EQ(file.Value("talvane_sensor_asserted", {{"state", "state 2"}}), "1");
    EXPECT_EQ(file.Value("talvane_sensor_readable"), "1") << "not that of events";
    EXPECT_EQ(file.Value("talvane_sensor_info", {{"id", "0x52"}}), "1");
    EXPECT_EQ(file.Value("talvane_health_sensors", {{"verdict", "not judged"}}), "2");
    EXPECT_EQ(file.Value("talvane_health_verdict"), "3");
}

TEST(SensorMetricsTest, CountsTheSensorsOfEachVerdict) {
    SensorNow hot = Thermometer(kCelsius, 95, kUpperLimits);
    hot.record.number = 0x11;
    const MetricFile file = Metrics({Thermometer(kCelsius, 42, kUpperLimits), hot}, {}, false);
    EXPECT_EQ(file.Value("talvane_health_sensors", {{"verdict", "OK"}}), "1");
    EXPECT_EQ(file.Value("talvane_health_sensors", {{"verdict", "WARNING"}}), "0");
    EXPECT_EQ(file.Value("talvane_health_sensors", {{"verdict", "CRITICAL"}}), "1");
    EXPECT_EQ(file.Value("talvane_health_sensors", {{"verdict", "UNKNOWN"}}), "0");
    EXPECT_EQ(file.Value("talvane_sensor_repository_complete"), "0");
    EXPECT_EQ(file.Value("talvane_health_verdict"), "2");
}

TEST(SensorMetricsTest, SensorsOfTheSameNameHaveDifferentIds) {
    std::vector<SensorNow> sensors(5, Thermometer(kCelsius, 42));
    sensors[1].record.lun = 1;
    sensors[2].record.owner = 0x2C;
    sensors[4].record.number = 0x11;
    const Health health = Judge({sensors, 5, true}, {});
    EXPECT_THAT(SensorIds(health.sensors),
                ElementsAre("0x10", "0x10.1", "0x10@0x2C", "0x10#2", "0x11"));
    EXPECT_EQ(Metrics(sensors).Value("talvane_sensor_verdict", {{"id", "0x10#2"}}), "0");
}

TEST(SensorMetricsTest, HostileNamesStayInTheirLabel) {
    SensorNow sensor = Thermometer(kCelsius, 42);
    sensor.record.name = "a\"} 9\n# TYPE x\\ \x1B\xFF";
    const MetricFile file = Metrics({sensor});
    EXPECT_EQ(
        file.Value("ipmi_temperature_celsius", {{"name", "a\"} 9\n# TYPE x\\ \\x1B\xC3\xBF"}}),
        "42");
}

TEST(SensorMetricsTest, ASensorWithoutANameHasItsNumber) {
    SensorNow sensor = Thermometer(kCelsius, 42);
    sensor.record.name = "";
    EXPECT_EQ(Metrics({sensor}).Value("ipmi_temperature_celsius", {{"name", "sensor 0x10"}}), "42");
}

TEST(SensorTypeLabelTest, NamesTypesAsTheStandardDoes) {
    EXPECT_STREQ(SensorTypeLabel(1), "Temperature");
    EXPECT_STREQ(SensorTypeLabel(0x08), "Power Supply");
    EXPECT_STREQ(SensorTypeLabel(0x10), "Event Logging Disabled");
    EXPECT_STREQ(SensorTypeLabel(0x1B), "Cable/Interconnect");
    EXPECT_STREQ(SensorTypeLabel(0x23), "Watchdog 2");
    EXPECT_STREQ(SensorTypeLabel(0x2C), "FRU State");
    EXPECT_STREQ(SensorTypeLabel(0x2D), "Reserved");
    EXPECT_STREQ(SensorTypeLabel(0xBF), "Reserved");
    EXPECT_STREQ(SensorTypeLabel(0xC0), "OEM Reserved");
    EXPECT_STREQ(SensorTypeLabel(-1), "Reserved");
}

}  // namespace
}  // namespace tool
