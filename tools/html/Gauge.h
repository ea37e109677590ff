// SPDX-License-Identifier: MIT
//
// A sensor's reading against its thresholds, as a picture.
#ifndef TALVANE_TOOLS_HTML_GAUGE_H
#define TALVANE_TOOLS_HTML_GAUGE_H

#include <string>
#include <vector>

#include "tools/library/Limits.h"
#include "tools/sensors/Judgement.h"

namespace tool {

// A part of the scale in which every reading has the same verdict.
struct GaugeZone {
    double from;
    double to;
    Verdict verdict;
    bool operator==(const GaugeZone&) const = default;
};

// The scale from its lowest to its highest value, with room around the limits and the reading. It
// begins at 0 where there is no lower limit and nothing is negative. REQUIRES: there is a limit,
// and all numbers are finite, as those of ReadingValue() are.
std::vector<GaugeZone> GaugeZones(const Limits& limits, std::optional<double> reading);

// An SVG image. `id` is an identifier that no other element of the page has. The image's title and
// description say all that it shows. REQUIRES: the sensor has a limit.
std::string GaugePicture(const JudgedSensor& judged, const std::string& id);

}  // namespace tool

#endif
