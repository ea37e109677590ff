// SPDX-License-Identifier: MIT
//
// The unit of a sensor decides on its family, as in the IPMI exporter.

#include "tools/metrics/SensorMetrics.h"

#include <map>

#include "tools/base/Text.h"
#include "tools/metrics/SensorTypeLabel.h"
#include "tools/sensors/EntityNames.h"
#include "tools/sensors/SensorStates.h"

namespace tool {
namespace {

// The metrics of one kind of sensor, and the factor and offset that lead to their unit.
struct Quantity {
    MetricFamily value;
    MetricFamily state;
    MetricFamily threshold;
    double factor = 1;
    double offset = 0;
};

constexpr const char* kStateHelp = "Whether the sensor is 0 nominal, 1 warning or 2 critical.";
constexpr const char* kThresholdHelp = "Threshold that the BMC holds.";

consteval Quantity Temperature(double factor, double offset) {
    return {{"ipmi_temperature_celsius", "Temperature in degrees Celsius."},
            {"ipmi_temperature_state", kStateHelp},
            {"talvane_temperature_threshold_celsius", kThresholdHelp},
            factor,
            offset};
}

constexpr Quantity kFanRatio = {
    {"ipmi_fan_speed_ratio", "Fan speed as a share of the highest speed."},
    {"ipmi_fan_speed_state", kStateHelp},
    {"talvane_fan_speed_threshold_ratio", kThresholdHelp},
    0.01};

constexpr Quantity kOtherQuantity = {
    {"ipmi_sensor_value", "Reading in the sensor's own unit, which talvane_sensor_info has."},
    {"ipmi_sensor_state", kStateHelp},
    {"talvane_sensor_threshold_value", "Threshold that the BMC holds, in the sensor's own unit."}};

struct QuantityRow {
    int unit;  // IPMI 2.0, table 43-15
    Quantity quantity;
};

constexpr QuantityRow kQuantities[] = {
    {1, Temperature(1, 0)},                 // degrees Celsius
    {2, Temperature(5 / 9.0, -160 / 9.0)},  // Fahrenheit
    {3, Temperature(1, -273.15)},           // kelvin
    {4,
     {{"ipmi_voltage_volts", "Voltage in volts."},
      {"ipmi_voltage_state", kStateHelp},
      {"talvane_voltage_threshold_volts", kThresholdHelp}}},
    {5,
     {{"ipmi_current_amperes", "Current in amperes."},
      {"ipmi_current_state", kStateHelp},
      {"talvane_current_threshold_amperes", kThresholdHelp}}},
    {6,
     {{"ipmi_power_watts", "Power in watts."},
      {"ipmi_power_state", kStateHelp},
      {"talvane_power_threshold_watts", kThresholdHelp}}},
    {18,
     {{"ipmi_fan_speed_rpm", "Fan speed in revolutions per minute."},
      {"ipmi_fan_speed_state", kStateHelp},
      {"talvane_fan_speed_threshold_rpm", kThresholdHelp}}},
};

constexpr MetricFamily kSensorInfo = {"talvane_sensor_info",
                                      "Which sensor it is: the part of the machine that it belongs "
                                      "to, its type, and the unit of its reading."};
constexpr MetricFamily kReadable = {"talvane_sensor_readable",
                                    "Whether the BMC answers for the sensor: 1 yes, 0 no."};
constexpr MetricFamily kSensorVerdict = {
    "talvane_sensor_verdict",
    "Verdict on the sensor: 0 OK, 1 WARNING, 2 CRITICAL, 3 UNKNOWN. Missing for one not judged."};
constexpr MetricFamily kProblemInfo = {"talvane_sensor_problem_info", "Why the sensor is not OK."};
constexpr MetricFamily kAsserted = {"talvane_sensor_asserted",
                                    "A state of a discrete sensor that is true now."};
constexpr MetricFamily kServerVerdict = {
    "talvane_health_verdict",
    "Verdict on the server, the worst of its sensors: 0 OK, 1 WARNING, 2 CRITICAL, 3 UNKNOWN."};
constexpr MetricFamily kCounts = {"talvane_health_sensors", "How many sensors have which verdict."};
constexpr MetricFamily kComplete = {
    "talvane_sensor_repository_complete",
    "Whether the BMC's sensor repository could be read to its end: 1 yes, 0 no."};

// Percentage, modifier unit and rate in the first byte of units (IPMI 2.0, 43.1, byte 21).
constexpr unsigned char kPercentageBit = 0x01;
constexpr unsigned char kNoPlainUnit = 0x3F;

const Quantity& QuantityOf(const SensorRecord& record) {
    constexpr int kFanSensorType = 4;
    if (record.formula.format == ReadingFormula::Format::kNone) return kOtherQuantity;
    if ((record.unit1 & kPercentageBit) != 0)
        return record.type == kFanSensorType ? kFanRatio : kOtherQuantity;
    if ((record.unit1 & kNoPlainUnit) != 0) return kOtherQuantity;
    for (const QuantityRow& row : kQuantities)
        if (row.unit == record.baseUnit) return row.quantity;
    return kOtherQuantity;
}

MetricLabels WithLabel(MetricLabels labels, const MetricLabel& more) {
    labels.push_back(more);
    return labels;
}

void AddReadingAndState(MetricPage& page, const JudgedSensor& judged, const MetricLabels& key) {
    const SensorNow& sensor = judged.sensor;
    const Quantity& quantity = QuantityOf(sensor.record);
    const bool isOther = &quantity == &kOtherQuantity;
    const MetricLabels labels =
        isOther ? WithLabel(key, {"type", SensorTypeLabel(sensor.record.type)}) : key;
    const auto converted = [&](double value) { return value * quantity.factor + quantity.offset; };
    if (sensor.value) page.Add(quantity.value, labels, converted(*sensor.value));
    if (judged.verdict && *judged.verdict != Verdict::kUnknown)
        page.Add(quantity.state, labels, static_cast<int>(*judged.verdict));
    for (const std::size_t limit : kAscending)
        if (sensor.limits[limit])
            page.Add(quantity.threshold, WithLabel(labels, {"threshold", kLimitNames[limit]}),
                     converted(*sensor.limits[limit]));
}

void AddStates(MetricPage& page, const SensorNow& sensor, const MetricLabels& key) {
    constexpr int kStateBits = 15;  // that a discrete sensor can have
    if (!IsRead(sensor) || HasThresholds(sensor.record)) return;
    for (int offset = 0; offset < kStateBits; ++offset) {
        if ((sensor.answer.states.value_or(0) >> offset & 1) == 0) continue;
        const StateMeaning* const meaning = MeaningOf(sensor.record, offset);
        page.AddInfo(kAsserted, WithLabel(key, {"state", meaning != nullptr
                                                             ? meaning->words
                                                             : "state " + std::to_string(offset)}));
    }
}

void AddVerdict(MetricPage& page, const JudgedSensor& judged, const MetricLabels& key) {
    if (judged.sensor.answer.status != SensorAnswer::Status::kEventsOnly)
        page.Add(kReadable, key, IsRead(judged.sensor) ? 1 : 0);
    if (!judged.verdict) return;
    page.Add(kSensorVerdict, key, static_cast<int>(*judged.verdict));
    if (*judged.verdict != Verdict::kOk)
        page.AddInfo(kProblemInfo,
                     WithLabel(WithLabel(key, {"verdict", VerdictName(*judged.verdict)}),
                               {"reason", judged.reason}));
}

void AddSensorInfo(MetricPage& page, const SensorRecord& record, MetricLabels labels) {
    labels.push_back({"entity", EntityInstanceName(record.entity, record.instance)});
    labels.push_back({"type", SensorTypeLabel(record.type)});
    labels.push_back({"unit", UnitName(record)});
    page.AddInfo(kSensorInfo, labels);
}

void AddCounts(MetricPage& page, const Health& health) {
    std::map<std::optional<Verdict>, int> counts;
    for (const JudgedSensor& judged : health.sensors) ++counts[judged.verdict];
    for (const Verdict verdict :
         {Verdict::kOk, Verdict::kWarning, Verdict::kCritical, Verdict::kUnknown})
        page.Add(kCounts, {{"verdict", VerdictName(verdict)}}, counts[verdict]);
    page.Add(kCounts, {{"verdict", "not judged"}}, counts[std::nullopt]);
}

}  // namespace

std::vector<std::string> SensorIds(const std::vector<JudgedSensor>& sensors) {
    constexpr int kBmcAddress = 0x20;
    std::map<std::string, int> used;
    std::vector<std::string> ids;
    for (const JudgedSensor& judged : sensors) {
        const SensorRecord& record = judged.sensor.record;
        std::string id = SensorNumberText(record);
        if (record.owner != kBmcAddress) id += '@' + HexText(static_cast<unsigned>(record.owner));
        if (const int count = ++used[id]; count > 1) id += '#' + std::to_string(count);
        ids.push_back(id);
    }
    return ids;
}

void AddHealth(MetricPage& page, const Health& health) {
    const std::vector<std::string> ids = SensorIds(health.sensors);
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const JudgedSensor& judged = health.sensors[i];
        const MetricLabels key = {{"id", ids[i]}, {"name", SensorName(judged.sensor.record)}};
        AddReadingAndState(page, judged, key);
        AddStates(page, judged.sensor, key);
        AddVerdict(page, judged, key);
        AddSensorInfo(page, judged.sensor.record, key);
    }
    page.Add(kServerVerdict, {}, static_cast<int>(health.verdict));
    page.Add(kComplete, {}, health.isComplete ? 1 : 0);
    AddCounts(page, health);
}

}  // namespace tool
