// SPDX-License-Identifier: MIT
//
// The format of the Monitoring Plugins Development Guidelines: text, a bar, and performance data
// ('label'=value[unit];[warning];[critical];[minimum];[maximum]).

#include <algorithm>
#include <map>

#include "tools/base/Text.h"
#include "tools/health/HealthText.h"
#include "tools/sensors/SensorText.h"

namespace tool {
namespace {

// Places in the order of kLimitNames.
constexpr std::size_t kLowerNonCritical = 0;
constexpr std::size_t kLowerCritical = 1;
constexpr std::size_t kUpperNonCritical = 3;
constexpr std::size_t kUpperCritical = 4;

// A bar separates text from performance data, so texts have none.
std::string WithoutBars(std::string text) {
    std::replace(text.begin(), text.end(), '|', '/');
    return text;
}

// The range in which a value is good: "10.8:13.2", "75" for 0 to 75, "600:" without an upper end.
std::string Range(std::optional<double> lower, std::optional<double> upper) {
    if (!lower && !upper) return "";
    if (!upper) return NumberText(lower) + ':';
    return (lower ? NumberText(lower) : "~") + ':' + NumberText(upper);
}

class Labels {
public:
    // The sensor's name, with its number where an earlier sensor has the same name.
    std::string Label(const SensorRecord& record) {
        std::string label = Printable(SensorName(record));
        if (++used_[label] > 1) label += ' ' + SensorNumberText(record);
        label.erase(std::remove_if(label.begin(), label.end(),
                                   [](char c) { return c == '\'' || c == '=' || c == '|'; }),
                    label.end());
        return label;
    }

private:
    std::map<std::string, int> used_;
};

std::string PerformanceData(const Health& health) {
    Labels labels;
    std::string data;
    for (const JudgedSensor& judged : health.sensors) {
        const SensorNow& sensor = judged.sensor;
        if (!sensor.value) continue;
        const bool isPercentage = UnitName(sensor.record) == "%";
        data += " '" + labels.Label(sensor.record) + "'=" + NumberText(sensor.value) +
                (isPercentage ? "%" : "") + ';' +
                Range(sensor.limits[kLowerNonCritical], sensor.limits[kUpperNonCritical]) + ';' +
                Range(sensor.limits[kLowerCritical], sensor.limits[kUpperCritical]) + ";;";
    }
    return data.empty() ? data : " |" + data;
}

std::string Line(const JudgedSensor& judged) {
    const std::string reading = ReadingText(judged.sensor);
    return WithoutBars(Printable(SensorName(judged.sensor.record)) +
                       (reading.empty() ? "" : ' ' + reading) + ": " + judged.reason);
}

}  // namespace

std::string ToNagios(const Health& health) {
    std::vector<const JudgedSensor*> bad;
    std::size_t judgedSensors = 0;
    for (const JudgedSensor& judged : health.sensors) {
        if (!judged.verdict) continue;
        ++judgedSensors;
        if (*judged.verdict != Verdict::kOk) bad.push_back(&judged);
    }
    std::stable_sort(bad.begin(), bad.end(), [](const JudgedSensor* a, const JudgedSensor* b) {
        return Severity(*a->verdict) > Severity(*b->verdict);
    });
    std::string text = std::string("SENSORS ") + VerdictName(health.verdict) + " - ";
    if (!bad.empty())
        text += Line(*bad.front()) + " (" + std::to_string(bad.size()) + " of " +
                std::to_string(judgedSensors) + " sensors not OK)";
    else if (!health.isComplete)
        text += "the sensor repository could not be read to its end";
    else if (judgedSensors == 0)
        text += "no sensor to judge";
    else
        text += std::to_string(judgedSensors) + " sensors OK";
    text += PerformanceData(health) + '\n';
    for (const JudgedSensor* judged : bad)
        text += std::string(VerdictName(*judged->verdict)) + ": " + Line(*judged) + '\n';
    return text;
}

}  // namespace tool
