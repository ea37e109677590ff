// SPDX-License-Identifier: MIT
//
// The sensors as metrics: readings and states by the names that users of the IPMI exporter know,
// and verdicts, thresholds and states in words beside them.
#ifndef TALVANE_TOOLS_METRICS_SENSORMETRICS_H
#define TALVANE_TOOLS_METRICS_SENSORMETRICS_H

#include <string>
#include <vector>

#include "tools/metrics/MetricPage.h"
#include "tools/sensors/Judgement.h"

namespace tool {

// The label `id` of each sensor, all different: its number as people see it ("0x30", "0x30.1"),
// "@0x2C" for a sensor of another controller than the BMC, and "#2" for the second sensor with the
// same number of the same controller.
std::vector<std::string> SensorIds(const std::vector<JudgedSensor>& sensors);

// A sensor that cannot be read has no value, and one whose verdict is UNKNOWN no ipmi_..._state.
void AddHealth(MetricPage& page, const Health& health);

}  // namespace tool

#endif
