// SPDX-License-Identifier: MIT
//
// What to think of the sensors: a verdict for each, with its reason, and the worst of them.
#ifndef TALVANE_TOOLS_SENSORS_JUDGEMENT_H
#define TALVANE_TOOLS_SENSORS_JUDGEMENT_H

#include <optional>
#include <string>
#include <vector>

#include "tools/sensors/AllSensors.h"
#include "tools/sensors/Rules.h"
#include "tools/sensors/Verdict.h"

namespace tool {

// One thing that is true of a sensor now.
struct Condition {
    std::string state;               // as rules name it: "upper critical", "chassis intrusion"
    std::optional<Verdict> verdict;  // nothing: it says neither good nor bad
};

struct JudgedSensor {
    SensorNow sensor;
    std::vector<Condition> conditions;  // what is true; empty for a sensor with nothing to say
    std::optional<Verdict> verdict;     // nothing: the sensor is not judged
    std::string reason;                 // in words, for any verdict and for none
};

struct Health {
    Verdict verdict = Verdict::kUnknown;  // the worst; UNKNOWN also when no sensor is judged
    std::vector<JudgedSensor> sensors;    // in the repository's order
    bool isComplete = true;
};

// States that are not in the table of SensorStates.h.
inline constexpr const char* kWithinLimits = "within limits";
inline constexpr const char* kNoLimits = "no thresholds";
inline constexpr const char* kStopped = "stopped";
inline constexpr const char* kNoReading = "no reading";
inline constexpr const char* kAbsent = "absent";

// The verdict for a reading beyond a limit.
Verdict VerdictOfLimit(std::size_t limit);

Health Judge(const AllSensors& all, const Rules& rules);

// What is true of a sensor, by the table and without rules.
std::vector<Condition> ConditionsOf(const SensorNow& sensor, bool isEntityAbsent);

}  // namespace tool

#endif
