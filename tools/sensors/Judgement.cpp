// SPDX-License-Identifier: MIT
//
// Collects what is true of a sensor, lets the rules replace verdicts, and takes the worst.

#include "tools/sensors/Judgement.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "tools/sensors/SensorStates.h"

namespace tool {
namespace {

constexpr int kFanType = 0x04;
constexpr int kSupplyType = 0x08;
constexpr int kDriveSlotType = 0x0D;
constexpr int kStates = 15;  // that a discrete sensor can have

// Entities are counted within their controller from instance 0x60 on; the owner keeps those apart.
using EntityKey = std::tuple<int, int, int>;

EntityKey KeyOf(const SensorRecord& record) {
    return {record.owner, record.entity, record.instance};
}

// A sensor of a bay that can be empty: without a supply or a drive, its other states mean nothing.
bool IsBay(const SensorRecord& record) {
    return record.eventType == kSensorSpecificEventType &&
           (record.type == kSupplyType || record.type == kDriveSlotType);
}

bool AreStatesKnown(const SensorRecord& record) {
    for (int offset = 0; offset < kStates; ++offset)
        if (MeaningOf(record, offset) != nullptr) return true;
    return false;
}

// The entities of which some sensor says that they are absent, and none that they are there.
class AbsentEntities {
public:
    explicit AbsentEntities(const std::vector<SensorNow>& sensors) {
        for (const SensorNow& sensor : sensors) {
            if (!IsRead(sensor) || !sensor.answer.states) continue;
            const auto presence = PresenceOf(sensor.record, *sensor.answer.states);
            if (!presence) continue;
            const auto known = present_.emplace(KeyOf(sensor.record), *presence).first;
            known->second = known->second || *presence;
        }
    }

    bool Contains(const SensorRecord& record) const {
        const auto known = present_.find(KeyOf(record));
        return known != present_.end() && !known->second;
    }

private:
    std::map<EntityKey, bool> present_;
};

// The outermost limit that the reading has reached, or that the BMC says is reached.
std::optional<std::size_t> ReachedLimitOf(const SensorNow& sensor) {
    constexpr Six<std::size_t> kOutermostFirst = {5, 2, 4, 1, 3, 0};
    const auto reached =
        sensor.value ? ReachedLimit(*sensor.value, sensor.limits) : std::optional<std::size_t>();
    const unsigned said = sensor.answer.states.value_or(0);
    for (const std::size_t limit : kOutermostFirst)
        if (reached == limit || (said >> limit & 1) != 0) return limit;
    return std::nullopt;
}

void AddAnalogConditions(std::vector<Condition>& conditions, const SensorNow& sensor) {
    if (HasThresholds(sensor.record)) {
        if (const auto limit = ReachedLimitOf(sensor))
            conditions.push_back({kLimitNames[*limit], VerdictOfLimit(*limit)});
        else
            conditions.push_back({HasAny(sensor.limits) ? kWithinLimits : kNoLimits, Verdict::kOk});
    }
    if (sensor.record.type == kFanType && sensor.value && *sensor.value == 0)
        conditions.push_back({kStopped, Verdict::kCritical});
}

void AddStateConditions(std::vector<Condition>& conditions, const SensorNow& sensor) {
    if (!sensor.answer.states) {
        conditions.push_back({kNoReading, Verdict::kUnknown});
        return;
    }
    const unsigned states = *sensor.answer.states;
    if (PresenceOf(sensor.record, states) == false && (states == 0 || IsBay(sensor.record))) {
        conditions.push_back({kAbsent, Verdict::kOk});
        return;
    }
    for (int offset = 0; offset < kStates; ++offset) {
        if ((states >> offset & 1) == 0) continue;
        const StateMeaning* const meaning = MeaningOf(sensor.record, offset);
        if (meaning == nullptr)
            conditions.push_back({"state " + std::to_string(offset), std::nullopt});
        else
            conditions.push_back({meaning->words, meaning->verdict});
    }
}

std::string LimitReason(const SensorNow& sensor, std::size_t limit, const std::string& state) {
    if (!sensor.limits[limit]) return state + " threshold reached, as the BMC reports";
    return state + " threshold is " + NumberText(sensor.limits[limit]);
}

std::string ReasonOf(const SensorNow& sensor, const Condition& condition) {
    if (condition.state == kNoReading)
        return IsRead(sensor) ? "states not reported" : WhyNoReading(sensor);
    for (std::size_t limit = 0; limit < kLimits; ++limit)
        if (condition.state == kLimitNames[limit])
            return LimitReason(sensor, limit, condition.state);
    return condition.state;
}

void ApplyRules(const Rules& rules, JudgedSensor& judged) {
    std::vector<Condition> kept;
    for (Condition condition : judged.conditions) {
        if (const Rule* rule = RuleFor(rules, judged.sensor.record, condition.state)) {
            if (!rule->verdict) continue;
            condition.verdict = rule->verdict;
        }
        kept.push_back(condition);
    }
    judged.conditions = kept;
}

// Sets the verdict and its reason from the conditions.
void Conclude(JudgedSensor& judged) {
    for (const Condition& condition : judged.conditions)
        if (condition.verdict)
            judged.verdict = Worse(judged.verdict.value_or(Verdict::kOk), *condition.verdict);
    for (const Condition& condition : judged.conditions) {
        if (condition.verdict != judged.verdict) continue;
        judged.reason += (judged.reason.empty() ? "" : ", ") + ReasonOf(judged.sensor, condition);
    }
}

JudgedSensor JudgeSensor(const SensorNow& sensor, bool isEntityAbsent, const Rules& rules) {
    JudgedSensor judged{sensor, ConditionsOf(sensor, isEntityAbsent), {}, {}};
    const bool hadConditions = !judged.conditions.empty();
    ApplyRules(rules, judged);
    if (hadConditions && judged.conditions.empty())
        judged.reason = "left out by a rule";
    else
        Conclude(judged);
    if (judged.reason.empty()) judged.reason = WhyNoReading(sensor);
    return judged;
}

}  // namespace

Verdict VerdictOfLimit(std::size_t limit) {
    constexpr Six<Verdict> kVerdicts = {Verdict::kWarning, Verdict::kCritical, Verdict::kCritical,
                                        Verdict::kWarning, Verdict::kCritical, Verdict::kCritical};
    return kVerdicts[limit];
}

std::vector<Condition> ConditionsOf(const SensorNow& sensor, bool isEntityAbsent) {
    std::vector<Condition> conditions;
    if (sensor.answer.status == SensorAnswer::Status::kEventsOnly) return conditions;
    const bool isAnalog = HasThresholds(sensor.record) || sensor.value.has_value();
    if (isEntityAbsent && (isAnalog || !IsRead(sensor))) return {{kAbsent, Verdict::kOk}};
    if (!IsRead(sensor)) return {{kNoReading, Verdict::kUnknown}};
    if (isAnalog) AddAnalogConditions(conditions, sensor);
    if (!HasThresholds(sensor.record)) AddStateConditions(conditions, sensor);
    if (conditions.empty())
        conditions.push_back({"no state asserted", AreStatesKnown(sensor.record)
                                                       ? std::optional(Verdict::kOk)
                                                       : std::nullopt});
    return conditions;
}

Health Judge(const AllSensors& all, const Rules& rules) {
    const AbsentEntities absent(all.sensors);
    Health health;
    health.isComplete = all.isComplete;
    std::optional<Verdict> worst;
    for (const SensorNow& sensor : all.sensors) {
        health.sensors.push_back(JudgeSensor(sensor, absent.Contains(sensor.record), rules));
        if (const auto verdict = health.sensors.back().verdict)
            worst = Worse(worst.value_or(Verdict::kOk), *verdict);
    }
    health.verdict = worst.value_or(Verdict::kUnknown);
    if (!all.isComplete) health.verdict = Worse(health.verdict, Verdict::kUnknown);
    return health;
}

}  // namespace tool
