// SPDX-License-Identifier: MIT
//
// The verdict, and the sensors with their gauges.
#ifndef TALVANE_TOOLS_HTML_SENSORSECTIONS_H
#define TALVANE_TOOLS_HTML_SENSORSECTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "tools/html/Markup.h"
#include "tools/sensors/Judgement.h"

namespace tool {

// The verdict with what is not OK; that it is unknown, without health.
std::string VerdictMarkup(const std::optional<Health>& health);

// The sensors with thresholds as gauges, and the others in a table.
std::vector<HtmlSection> SensorSections(const Health& health);

}  // namespace tool

#endif
