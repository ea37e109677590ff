// SPDX-License-Identifier: MIT
//
// What the BMC's answers say about a sensor.
#ifndef TALVANE_TOOLS_SENSORS_SENSORANSWER_H
#define TALVANE_TOOLS_SENSORS_SENSORANSWER_H

#include <optional>

#include "base/Bytes.h"
#include "tools/library/Limits.h"
#include "tools/sensors/SensorRecord.h"

namespace tool {

// An answer to Get Sensor Reading (IPMI 2.0, 35.14).
struct SensorAnswer {
    enum class Status {
        kRead,
        kNoAnswer,
        kNotScanned,   // scanning of this sensor is disabled
        kUnavailable,  // the BMC has no valid reading now
        kOther,        // kept by another controller, or by software, which is not asked
        kEventsOnly    // the sensor has no reading by its nature
    };
    Status status = Status::kNoAnswer;
    unsigned char raw = 0;
    // Of a discrete sensor, its states. Of a threshold sensor, the thresholds that the BMC has
    // found to be reached. Nothing when the BMC did not say it.
    std::optional<unsigned> states;
};

SensorAnswer DecodeReading(talvane::ByteView answer);

// The thresholds that can be read, as values, from an answer to Get Sensor Thresholds (35.9).
Limits DecodeThresholds(talvane::ByteView answer, const ReadingFormula& formula);

}  // namespace tool

#endif
