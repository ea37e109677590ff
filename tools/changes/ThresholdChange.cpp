// SPDX-License-Identifier: MIT
//
// Plans the change, refuses or shows it, and after writing asks the BMC what it now holds.

#include "tools/changes/ThresholdChange.h"

#include "Talvane.h"
#include "tools/base/Layout.h"
#include "tools/base/Source.h"
#include "tools/changes/ThresholdPlan.h"
#include "tools/sensors/EntityNames.h"
#include "tools/sensors/SensorStates.h"

namespace tool {
namespace {

enum class Stage { kRefused, kPlanned, kWritten };

std::string Title(Stage stage) {
    if (stage == Stage::kRefused) return "Thresholds as the library would write them";
    return stage == Stage::kPlanned ? "Thresholds to be written" : "Thresholds written";
}

std::string PlanText(const std::vector<ThresholdPlan>& plans, Stage stage) {
    std::vector<Row> rows;
    for (const ThresholdPlan& plan : plans) AddPlanRows(rows, plan);
    return Section(Title(stage),
                   {TableBlock(PlanColumns(stage == Stage::kWritten), rows),
                    NoteBlock("The library writes a sensor's whole set, as read by place in the "
                              "repository: others can change.")});
}

Outcome Described(const std::vector<ThresholdPlan>& plans, Stage stage,
                  const std::string& problem) {
    Json sensors = Json::array();
    for (const ThresholdPlan& plan : plans) sensors.push_back(PlanJson(plan));
    return {PlanText(plans, stage),
            {{"done", stage == Stage::kWritten}, {"sensors", sensors}},
            problem};
}

// The library ignores what the BMC answers to a request, so the BMC is asked again.
bool WasTaken(const ThresholdPlan& plan) {
    const auto raw = SensorRepository::Get().Current(plan.sensor).raw;
    const auto now = LimitValues<unsigned char>(raw);
    for (std::size_t i = 0; i < kLimits; ++i) {
        const auto& written = plan.thresholds[i].written;
        if (written && InMask(raw.readableFlag, i) && now[i] != *written) return false;
    }
    return true;
}

// Why a plan is not even worth showing: the sensor has no such value. Empty when it has. A sensor
// that counts with a sign is refused for that, whatever the value is.
std::string RangeProblem(const ThresholdPlan& plan, double value) {
    if (IsSigned(plan.sensor.formula)) return "";
    const SensorRange range = RangeOf(plan.sensor);
    if (range.Contains(value)) return "";
    return plan.name + " cannot hold " + NumberText(value) + ": its values are from " +
           NumberText(range.lowest) + " to " + NumberText(range.highest);
}

Outcome NothingPlanned(const std::string& problem) {
    return {"", {{"done", false}, {"sensors", Json::array()}}, problem};
}

}  // namespace

Outcome SetThreshold(const Order& order) {
    const ThresholdOrder& threshold = order.threshold;
    if (IsIpmiSupport() == 0) return {"", Json(), kBmc.whyNotRead()};
    const auto plans = PlanThreshold(threshold);
    if (plans.empty())
        return NothingPlanned("the BMC has no sensor of the entity " +
                              EntityText(threshold.entity) + " and the type " +
                              SensorTypeText(threshold.type));
    for (const ThresholdPlan& plan : plans)
        if (const std::string problem = RangeProblem(plan, threshold.value); !problem.empty())
            return NothingPlanned(problem + "; nothing was written");
    for (const ThresholdPlan& plan : plans)
        if (const std::string objection = Objection(plan, threshold); !objection.empty())
            return Described(plans, Stage::kRefused, objection + "; nothing was written");
    if (!order.confirmed)
        return Described(plans, Stage::kPlanned, "nothing was written; --yes writes this");
    if (SetThresholdInfo(threshold.entity, threshold.type, threshold.which, threshold.value) != 0)
        return Described(plans, Stage::kWritten, "the library could not write the thresholds");
    for (const ThresholdPlan& plan : plans)
        if (!WasTaken(plan))
            return Described(plans, Stage::kWritten, plan.name + " did not take the thresholds");
    return Described(plans, Stage::kWritten, "");
}

}  // namespace tool
