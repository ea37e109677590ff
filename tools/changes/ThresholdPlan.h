// SPDX-License-Identifier: MIT
//
// What setting a threshold would do to one sensor. The library writes the whole set of thresholds
// that its repository walk has read. The walk asks for them by the record's place in the
// repository, not by the sensor's number. So the other thresholds of the sensor can change, too.
#ifndef TALVANE_TOOLS_CHANGES_THRESHOLDPLAN_H
#define TALVANE_TOOLS_CHANGES_THRESHOLDPLAN_H

#include <optional>
#include <string>
#include <vector>

#include "tools/changes/Order.h"
#include "tools/library/Limits.h"
#include "tools/library/SensorRepository.h"

namespace tool {

struct PlannedThreshold {
    std::optional<unsigned char> now;      // raw; nothing when it cannot be read
    std::optional<unsigned char> written;  // nothing when it cannot be set
};

struct ThresholdPlan {
    RepositorySensor sensor;
    std::string name;  // the sensor's name and number
    int which;         // the threshold asked for
    Six<PlannedThreshold> thresholds;
    Limits nowValues;      // in the sensor's unit
    Limits writtenValues;  // in the sensor's unit
};

// For each sensor of the order's entity and type. Reads from the BMC and writes nothing.
std::vector<ThresholdPlan> PlanThreshold(const ThresholdOrder& order);

// Whether the sensor's values reach as far as the order's value. Beyond them the library would
// write another value in its place.
struct SensorRange {
    double lowest;
    double highest;
    bool Contains(double value) const { return value >= lowest && value <= highest; }
};
SensorRange RangeOf(const RepositorySensor& sensor);

// Why the order must not be carried out for a sensor; empty when it may be.
std::string Objection(const ThresholdPlan& plan, const ThresholdOrder& order);

// The rows of a table with the columns of PlanColumns().
std::vector<Column> PlanColumns(bool written);
void AddPlanRows(std::vector<Row>& rows, const ThresholdPlan& plan);

Json PlanJson(const ThresholdPlan& plan);

}  // namespace tool

#endif
