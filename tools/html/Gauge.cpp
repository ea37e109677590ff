// SPDX-License-Identifier: MIT
//
// Finds the scale and its zones, and draws zones, limits and a pointer.

#include "tools/html/Gauge.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tools/html/Escape.h"
#include "tools/html/Markup.h"
#include "tools/sensors/SensorText.h"

namespace tool {
namespace {

// The picture, in its own units.
constexpr double kWidth = 300;
constexpr double kHeight = 58;
constexpr double kLeft = 8;
constexpr double kScaleWidth = kWidth - 2 * kLeft;
constexpr double kBarTop = 18;
constexpr double kBarHeight = 14;
constexpr double kLabelBase = 50;
constexpr double kLetterWidth = 6.6;  // of the labels' font, at most

std::string Fixed(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

std::vector<double> MarksOf(const Limits& limits) {
    std::vector<double> marks;
    for (const std::size_t i : kAscending)
        if (limits[i]) marks.push_back(*limits[i]);
    std::sort(marks.begin(), marks.end());
    marks.erase(std::unique(marks.begin(), marks.end()), marks.end());
    return marks;
}

struct Scale {
    double lowest;
    double highest;

    double At(double value) const {
        return kLeft + kScaleWidth * (value - lowest) / (highest - lowest);
    }
};

Scale ScaleOf(const Limits& limits, const std::vector<double>& marks,
              std::optional<double> reading) {
    constexpr std::size_t kLowerLimits = 3;
    constexpr double kRoom = 0.15;  // of the span, beyond what is shown
    double lowest = marks.front();
    double highest = marks.back();
    if (reading) {
        lowest = std::min(lowest, *reading);
        highest = std::max(highest, *reading);
    }
    const bool hasLower = std::any_of(limits.begin(), limits.begin() + kLowerLimits,
                                      [](const auto& limit) { return limit.has_value(); });
    const bool startsAtZero = lowest >= 0 && (!hasLower || lowest < highest / 3);
    if (startsAtZero) lowest = 0;
    if (highest - lowest <= 0) highest = lowest + std::max(std::abs(lowest), 1.0);
    const double room = (highest - lowest) * kRoom;
    return {startsAtZero ? 0 : lowest - room, highest + room};
}

Verdict VerdictAt(double value, const Limits& limits) {
    const auto reached = ReachedLimit(value, limits);
    return reached ? VerdictOfLimit(*reached) : Verdict::kOk;
}

std::string ZoneMarkup(const GaugeZone& zone, const Scale& scale) {
    const double from = scale.At(zone.from);
    return std::string("<rect class=\"zone ") + ToneClass(ToneOf(zone.verdict)) + "\" x=\"" +
           Fixed(from) + "\" y=\"" + Fixed(kBarTop) + "\" width=\"" +
           Fixed(scale.At(zone.to) - from) + "\" height=\"" + Fixed(kBarHeight) + "\"/>\n";
}

// A line at each limit, and its value below it where there is room.
std::string MarksMarkup(const std::vector<double>& marks, const Scale& scale) {
    std::string markup;
    double free = 0;  // where the next label may begin
    for (const double mark : marks) {
        const double at = scale.At(mark);
        markup += "<line class=\"limit\" x1=\"" + Fixed(at) + "\" y1=\"" + Fixed(kBarTop) +
                  "\" x2=\"" + Fixed(at) + "\" y2=\"" + Fixed(kBarTop + kBarHeight + 5) + "\"/>\n";
        const std::string label = NumberText(mark);
        const double half = static_cast<double>(label.size()) * kLetterWidth / 2;
        const double middle = std::clamp(at, half, kWidth - half);
        if (middle - half < free) continue;
        free = middle + half + kLetterWidth / 2;
        markup += "<text class=\"label\" x=\"" + Fixed(middle) + "\" y=\"" + Fixed(kLabelBase) +
                  "\">" + label + "</text>\n";
    }
    return markup;
}

// A triangle above the bar, and a thin line from it across the bar.
std::string PointerMarkup(double at) {
    constexpr double kHalfLine = 1.2;
    constexpr double kHalfTriangle = 6;
    return "<path class=\"pointer\" d=\"M" + Fixed(at - kHalfLine) + ' ' +
           Fixed(kBarTop + kBarHeight + 3) + 'V' + Fixed(kBarTop - 5) + 'L' +
           Fixed(at - kHalfTriangle) + ' ' + Fixed(kBarTop - 15) + 'H' + Fixed(at + kHalfTriangle) +
           'L' + Fixed(at + kHalfLine) + ' ' + Fixed(kBarTop - 5) + 'V' +
           Fixed(kBarTop + kBarHeight + 3) + "z\"/>\n";
}

std::string DescriptionOf(const JudgedSensor& judged) {
    const SensorNow& sensor = judged.sensor;
    std::string text = "Reading: " + (sensor.value ? ReadingText(sensor) : judged.reason) + '.';
    for (const std::size_t i : kAscending)
        if (sensor.limits[i])
            text += std::string(" ") + kLimitNames[i] + ": " + ValueText(sensor, sensor.limits[i]) +
                    '.';
    if (judged.verdict) text += std::string(" Verdict: ") + VerdictName(*judged.verdict) + '.';
    return text;
}

}  // namespace

std::vector<GaugeZone> GaugeZones(const Limits& limits, std::optional<double> reading) {
    const std::vector<double> marks = MarksOf(limits);
    const Scale scale = ScaleOf(limits, marks, reading);
    std::vector<double> borders{scale.lowest};
    for (const double mark : marks)
        if (mark > scale.lowest) borders.push_back(mark);
    borders.push_back(scale.highest);
    std::vector<GaugeZone> zones;
    for (std::size_t i = 0; i + 1 < borders.size(); ++i) {
        const Verdict verdict = VerdictAt((borders[i] + borders[i + 1]) / 2, limits);
        if (!zones.empty() && zones.back().verdict == verdict)
            zones.back().to = borders[i + 1];
        else
            zones.push_back({borders[i], borders[i + 1], verdict});
    }
    return zones;
}

std::string GaugePicture(const JudgedSensor& judged, const std::string& id) {
    const SensorNow& sensor = judged.sensor;
    const std::vector<GaugeZone> zones = GaugeZones(sensor.limits, sensor.value);
    const Scale scale{zones.front().from, zones.back().to};
    std::string markup = "<svg class=\"gauge\" role=\"img\" viewBox=\"0 0 " + Fixed(kWidth) + ' ' +
                         Fixed(kHeight) + "\" aria-labelledby=\"" + id + "-title " + id +
                         "-desc\">\n<title id=\"" + id + "-title\">" +
                         Escaped(SensorName(sensor.record)) + "</title>\n<desc id=\"" + id +
                         "-desc\">" + Escaped(DescriptionOf(judged)) + "</desc>\n";
    for (const GaugeZone& zone : zones) markup += ZoneMarkup(zone, scale);
    markup += MarksMarkup(MarksOf(sensor.limits), scale);
    if (sensor.value) markup += PointerMarkup(scale.At(*sensor.value));
    return markup + "</svg>\n";
}

}  // namespace tool
