// SPDX-License-Identifier: MIT
//
// Joins names, numbers and words.

#include "tools/sensors/SensorText.h"

#include <nlohmann/json.hpp>

#include "tools/base/JsonValue.h"
#include "tools/sensors/EntityNames.h"
#include "tools/sensors/Judgement.h"
#include "tools/sensors/SensorStates.h"

namespace tool {

std::string ValueText(const SensorNow& sensor, std::optional<double> value) {
    if (!value) return "";
    const std::string unit = UnitName(sensor.record);
    return NumberText(value) + (unit.empty() ? "" : ' ' + unit);
}

std::vector<std::string> StateWords(const SensorNow& sensor) {
    std::vector<std::string> words;
    for (const Condition& condition : ConditionsOf(sensor, false)) words.push_back(condition.state);
    return words;
}

std::string StateText(const SensorNow& sensor) {
    if (!IsRead(sensor)) return WhyNoReading(sensor);
    std::string text;
    for (const std::string& word : StateWords(sensor)) text += (text.empty() ? "" : ", ") + word;
    return text;
}

Cell StateCell(const SensorNow& sensor) {
    std::optional<Verdict> worst;
    for (const Condition& condition : ConditionsOf(sensor, false))
        if (condition.verdict) worst = Worse(worst.value_or(Verdict::kOk), *condition.verdict);
    return {StateText(sensor), worst ? ToneOf(*worst) : Tone::kPlain};
}

Json IdentityJson(const SensorRecord& record) {
    return {{"name", TextJson(record.name)},
            {"number", record.number},
            {"lun", record.lun},
            {"owner", record.owner},
            {"entity",
             {{"code", record.entity},
              {"instance", record.instance},
              {"name", EntityName(record.entity)}}},
            {"type", CodeJson(record.type, SensorTypeName(record.type))},
            {"eventType", CodeJson(record.eventType, EventTypeName(record.eventType))}};
}

Json ReadingJson(const SensorNow& sensor, std::optional<double> value) {
    return QuantityJson(value, UnitName(sensor.record), ValueText(sensor, value));
}

Json ThresholdsJson(const SensorNow& sensor) {
    if (!HasThresholds(sensor.record)) return {};
    Json object = Json::object();
    for (const std::size_t i : kAscending)
        object[LimitMember(i)] = ReadingJson(sensor, sensor.limits[i]);
    return object;
}

}  // namespace tool
