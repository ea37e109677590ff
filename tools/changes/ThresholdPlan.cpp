// SPDX-License-Identifier: MIT
//
// Follows the library's own steps up to the write, to know beforehand what it would write.

#include "tools/changes/ThresholdPlan.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "tools/base/Text.h"

namespace tool {
namespace {

std::string NumberedName(const RepositorySensor& sensor, const std::string& name) {
    const std::string number = HexText(sensor.number);
    return name.empty() ? "sensor " + number : name + " (" + number + ")";
}

Limits Values(const SensorFormulaParameter& formula, const Six<PlannedThreshold>& thresholds,
              std::optional<unsigned char> PlannedThreshold::*member) {
    Limits values;
    for (std::size_t i = 0; i < kLimits; ++i)
        if (const auto raw = thresholds[i].*member)
            values[i] = SensorRepository::Get().Value(formula, *raw);
    return values;
}

// What the library would write, by its own steps.
SensorThresholdInfoRaw SetToWrite(const RepositorySensor& sensor, const ThresholdOrder& order) {
    SensorThresholdInfoRaw set = sensor.walkThresholds;
    set.MinThreshold = 0;
    set.MaxThreshold = 0xFF;
    const unsigned char raw = SensorRepository::Get().Raw(sensor.formula, order.value);
    (void)Controller().SetThresholdOrder(set, order.which, raw);  // result not used: always 0
    return set;
}

ThresholdPlan PlanFor(const RepositorySensor& sensor, const ThresholdOrder& order) {
    SensorRepository& repository = SensorRepository::Get();
    const auto current = repository.Current(sensor).raw;
    const auto set = SetToWrite(sensor, order);
    const auto now = LimitValues<unsigned char>(current);
    const auto written = LimitValues<unsigned char>(set);
    ThresholdPlan plan{};
    plan.sensor = sensor;
    plan.name = NumberedName(sensor, repository.Name(order.type, sensor.number));
    plan.which = order.which;
    for (std::size_t i = 0; i < kLimits; ++i) {
        if (InMask(current.readableFlag, i)) plan.thresholds[i].now = now[i];
        if (InMask(set.settableFlag, i)) plan.thresholds[i].written = written[i];
    }
    plan.nowValues = Values(sensor.formula, plan.thresholds, &PlannedThreshold::now);
    plan.writtenValues = Values(sensor.formula, plan.thresholds, &PlannedThreshold::written);
    return plan;
}

// The larger distance between the value of a raw byte and those of its two neighbours.
double StepAt(const SensorFormulaParameter& formula, unsigned char raw) {
    SensorRepository& repository = SensorRepository::Get();
    const double value = repository.Value(formula, raw);
    double step = 0;
    if (raw > 0)
        step = std::abs(value - repository.Value(formula, static_cast<unsigned char>(raw - 1)));
    if (raw < 0xFF)
        step = std::max(
            step, std::abs(repository.Value(formula, static_cast<unsigned char>(raw + 1)) - value));
    return step;
}

std::string Remark(const ThresholdPlan& plan, std::size_t limit) {
    const PlannedThreshold& threshold = plan.thresholds[limit];
    if (!threshold.written) return "cannot be set";
    if (static_cast<std::size_t>(plan.which) == limit) return "asked for";
    if (!threshold.now) return "cannot be read";
    return *threshold.now == *threshold.written ? "" : "changes with it";
}

std::string ValueText(std::optional<unsigned char> raw, std::optional<double> value) {
    if (!raw) return "";
    return NumberText(value) + " (" + HexText(*raw) + ')';
}

}  // namespace

std::vector<ThresholdPlan> PlanThreshold(const ThresholdOrder& order) {
    std::vector<ThresholdPlan> plans;
    for (const RepositorySensor& sensor :
         SensorRepository::Get().Matching(order.entity, order.type))
        plans.push_back(PlanFor(sensor, order));
    return plans;
}

SensorRange RangeOf(const RepositorySensor& sensor) {
    constexpr int kHighestRaw = 0xFF;
    SensorRepository& repository = SensorRepository::Get();
    const double first = repository.Value(sensor.formula, 0);
    SensorRange range{first, first};
    for (int raw = 1; raw <= kHighestRaw; ++raw) {
        const double value = repository.Value(sensor.formula, static_cast<unsigned char>(raw));
        range.lowest = std::min(range.lowest, value);
        range.highest = std::max(range.highest, value);
    }
    return range;
}

std::string Objection(const ThresholdPlan& plan, const ThresholdOrder& order) {
    const auto which = static_cast<std::size_t>(order.which);
    const auto written = plan.thresholds[which].written;
    if (!written)
        return plan.name + " does not let its " + kLimitNames[which] + " threshold be set";
    if (IsSigned(plan.sensor.formula))
        return plan.name + " counts its values with a sign, which the library does not write";
    const double value = *plan.writtenValues[which];
    if (!(std::abs(value - order.value) <= StepAt(plan.sensor.formula, *written)))
        return plan.name + " cannot hold " + NumberText(order.value) + ": it would store " +
               NumberText(value);
    return "";
}

std::vector<Column> PlanColumns(bool written) {
    return {{"Sensor"},
            {"Threshold"},
            {written ? "Before" : "Now", Column::Align::kRight},
            {"Written", Column::Align::kRight},
            {"Remark"}};
}

void AddPlanRows(std::vector<Row>& rows, const ThresholdPlan& plan) {
    for (const std::size_t i : kAscending)
        rows.push_back(
            {plan.name, kLimitNames[i], ValueText(plan.thresholds[i].now, plan.nowValues[i]),
             ValueText(plan.thresholds[i].written, plan.writtenValues[i]), Remark(plan, i)});
}

Json PlanJson(const ThresholdPlan& plan) {
    return {{"name", Utf8(plan.name)},
            {"number", plan.sensor.number},
            {"now", LimitsJson(plan.nowValues)},
            {"written", LimitsJson(plan.writtenValues)}};
}

}  // namespace tool
