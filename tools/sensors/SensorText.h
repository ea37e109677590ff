// SPDX-License-Identifier: MIT
//
// A sensor in words and in JSON.
#ifndef TALVANE_TOOLS_SENSORS_SENSORTEXT_H
#define TALVANE_TOOLS_SENSORS_SENSORTEXT_H

#include <string>
#include <vector>

#include "tools/base/Json.h"
#include "tools/base/Layout.h"
#include "tools/sensors/AllSensors.h"

namespace tool {

// "79 degree C"; empty without a value.
std::string ValueText(const SensorNow& sensor, std::optional<double> value);
inline std::string ReadingText(const SensorNow& sensor) {
    return ValueText(sensor, sensor.value);
}

// What is true of the sensor now: "upper critical", "presence detected". REQUIRES: IsRead() is
// true.
std::vector<std::string> StateWords(const SensorNow& sensor);

// The same in one text, or why there is no reading.
std::string StateText(const SensorNow& sensor);

// The same for a table, with the tone of the worst verdict by the table of states.
Cell StateCell(const SensorNow& sensor);

// The members that say which sensor it is: name, number, entity, type ...
Json IdentityJson(const SensorRecord& record);

// {"value", "unit", "text"}, or null.
Json ReadingJson(const SensorNow& sensor, std::optional<double> value);

// An object with a member for each limit, null where there is none; null without thresholds.
Json ThresholdsJson(const SensorNow& sensor);

}  // namespace tool

#endif
