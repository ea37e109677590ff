// SPDX-License-Identifier: MIT
//
// Every sensor of the BMC's repository, with what the BMC says about it now.
#ifndef TALVANE_TOOLS_SENSORS_ALLSENSORS_H
#define TALVANE_TOOLS_SENSORS_ALLSENSORS_H

#include <optional>
#include <string>
#include <vector>

#include "tools/sensors/SensorAnswer.h"
#include "tools/sensors/SensorRecord.h"

namespace tool {

struct SensorNow {
    SensorRecord record;
    SensorAnswer answer;
    std::optional<double> value;  // nothing without a valid analog reading
    Limits limits;                // those that the BMC holds now
};

struct AllSensors {
    std::vector<SensorNow> sensors;
    int records = 0;         // of all kinds, read from the repository
    bool isComplete = true;  // whether the repository could be read to its end
};

// Reads the repository once in a process, and the sensors each time. REQUIRES: IsIpmiSupport() is
// not 0.
AllSensors ReadAllSensors();

// The sensor's name; "sensor 0x30" for one without.
std::string SensorName(const SensorRecord& record);

// The number in hexadecimal: "0x30"; with the logical unit when that is not 0: "0x30.1".
std::string SensorNumberText(const SensorRecord& record);

// Whether a reading was given that the sensor's kind has a value for.
inline bool IsRead(const SensorNow& sensor) {
    return sensor.answer.status == SensorAnswer::Status::kRead;
}

// Why there is no reading: "no answer". REQUIRES: IsRead() is false.
const char* WhyNoReading(const SensorNow& sensor);

}  // namespace tool

#endif
