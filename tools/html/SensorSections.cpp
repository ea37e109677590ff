// SPDX-License-Identifier: MIT
//
// What is not OK comes first, in the verdict and among the gauges.

#include "tools/html/SensorSections.h"

#include <algorithm>

#include "tools/health/HealthText.h"
#include "tools/html/Escape.h"
#include "tools/html/Gauge.h"
#include "tools/sensors/EntityNames.h"
#include "tools/sensors/SensorStates.h"
#include "tools/sensors/SensorText.h"

namespace tool {
namespace {

Tone ToneOf(const JudgedSensor& judged) {
    return judged.verdict ? ToneOf(*judged.verdict) : Tone::kPlain;
}

std::string VerdictWord(const JudgedSensor& judged) {
    return judged.verdict ? VerdictName(*judged.verdict) : "not judged";
}

std::string PlaceOf(const SensorRecord& record) {
    return EntityInstanceName(record.entity, record.instance);
}

std::vector<const JudgedSensor*> WorstFirst(const Health& health) {
    std::vector<const JudgedSensor*> sensors;
    for (const JudgedSensor& judged : health.sensors) sensors.push_back(&judged);
    const auto severity = [](const JudgedSensor* judged) {
        return judged->verdict ? Severity(*judged->verdict) : -1;
    };
    std::stable_sort(sensors.begin(), sensors.end(),
                     [&](const JudgedSensor* one, const JudgedSensor* other) {
                         return severity(one) > severity(other);
                     });
    return sensors;
}

std::string FaultMarkup(const JudgedSensor& judged) {
    const SensorRecord& record = judged.sensor.record;
    const std::string reading = ReadingText(judged.sensor);
    return "<li>" + HtmlMark(VerdictWord(judged), ToneOf(judged)) + " <strong>" +
           Escaped(SensorName(record)) + "</strong> <span class=\"place\">(" +
           Escaped(PlaceOf(record)) + ")</span>: " + Escaped(judged.reason) +
           (reading.empty() ? "" : ", reading " + Escaped(reading)) + "</li>\n";
}

std::string GaugeCard(const JudgedSensor& judged, std::size_t number) {
    const SensorRecord& record = judged.sensor.record;
    const std::string reading = ReadingText(judged.sensor);
    return std::string("<li class=\"") + ToneClass(ToneOf(judged)) +
           "\">\n<div class=\"head\"><h3>" + Escaped(SensorName(record)) + "</h3>" +
           HtmlMark(VerdictWord(judged), ToneOf(judged)) + "</div>\n<p class=\"place\">" +
           Escaped(PlaceOf(record)) + "</p>\n<p class=\"reading\">" + EscapedOrDash(reading) +
           "</p>\n" + GaugePicture(judged, "gauge-" + std::to_string(number)) +
           "<p class=\"details\">" + Escaped(judged.reason) + "</p>\n</li>\n";
}

Row StateRow(const JudgedSensor& judged) {
    const SensorRecord& record = judged.sensor.record;
    return {SensorName(record),          PlaceOf(record),
            SensorTypeName(record.type), ReadingText(judged.sensor),
            StateText(judged.sensor),    Cell(VerdictWord(judged), ToneOf(judged))};
}

}  // namespace

std::string VerdictMarkup(const std::optional<Health>& health) {
    const Verdict verdict = health ? health->verdict : Verdict::kUnknown;
    std::string markup = std::string("<section id=\"health\" class=\"verdict ") +
                         ToneClass(ToneOf(verdict)) +
                         "\" aria-labelledby=\"health-title\">\n<h2 id=\"health-title\">Health: " +
                         VerdictName(verdict) + "</h2>\n";
    if (!health) return markup + "<p>The sensors could not be read.</p>\n</section>\n";
    markup += "<p>" + Escaped(CountText(*health)) + "</p>\n";
    if (!health->isComplete)
        markup += "<p>The BMC's sensor repository could not be read to its end.</p>\n";
    std::string faults;
    for (const JudgedSensor* judged : WorstFirst(*health))
        if (judged->verdict && *judged->verdict != Verdict::kOk) faults += FaultMarkup(*judged);
    if (!faults.empty()) markup += "<ul class=\"faults\">\n" + faults + "</ul>\n";
    return markup + "</section>\n";
}

std::vector<HtmlSection> SensorSections(const Health& health) {
    std::string gauges;
    std::vector<Row> rows;
    std::size_t number = 0;
    for (const JudgedSensor* judged : WorstFirst(health)) {
        if (HasAny(judged->sensor.limits))
            gauges += GaugeCard(*judged, ++number);
        else
            rows.push_back(StateRow(*judged));
    }
    std::vector<HtmlSection> sections;
    if (!gauges.empty())
        sections.push_back({"sensors", "Sensors", "<ul class=\"gauges\">\n" + gauges + "</ul>\n"});
    if (!rows.empty())
        sections.push_back({"states", "States",
                            HtmlTable("Sensors without thresholds",
                                      {{"Sensor"},
                                       {"Entity"},
                                       {"Type"},
                                       {"Reading", Column::Align::kRight},
                                       {"State"},
                                       {"Verdict"}},
                                      rows)});
    return sections;
}

}  // namespace tool
