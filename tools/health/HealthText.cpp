// SPDX-License-Identifier: MIT
//
// Sorts and counts the sensors by verdict.

#include "tools/health/HealthText.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/base/Layout.h"
#include "tools/sensors/EntityNames.h"
#include "tools/sensors/SensorStates.h"
#include "tools/sensors/SensorText.h"

namespace tool {
namespace {

constexpr Verdict kWorstFirst[] = {Verdict::kCritical, Verdict::kWarning, Verdict::kUnknown,
                                   Verdict::kOk};

std::vector<const JudgedSensor*> With(const Health& health, std::optional<Verdict> verdict) {
    std::vector<const JudgedSensor*> found;
    for (const JudgedSensor& judged : health.sensors)
        if (judged.verdict == verdict) found.push_back(&judged);
    return found;
}

Cell VerdictCell(Verdict verdict) {
    return {VerdictName(verdict), ToneOf(verdict)};
}

Row RowFor(const JudgedSensor& judged) {
    const SensorRecord& record = judged.sensor.record;
    return {judged.verdict ? VerdictCell(*judged.verdict) : Cell(""),
            SensorNumberText(record),
            SensorName(record),
            EntityInstanceName(record.entity, record.instance),
            ReadingText(judged.sensor),
            judged.reason};
}

Json JudgedJson(const JudgedSensor& judged) {
    Json json = IdentityJson(judged.sensor.record);
    json["verdict"] = judged.verdict ? Json(VerdictName(*judged.verdict)) : Json();
    json["reason"] = judged.reason;
    json["reading"] = ReadingJson(judged.sensor, judged.sensor.value);
    json["states"] = IsRead(judged.sensor) ? Json(StateWords(judged.sensor)) : Json();
    return json;
}

// A state that rules can name, and its verdict.
struct NamedState {
    std::string kind;  // of sensor, or its type
    const char* state;
    Verdict verdict;
};

std::vector<NamedState> AllStates() {
    std::vector<NamedState> states{{"any", kNoReading, Verdict::kUnknown},
                                   {"any", kAbsent, Verdict::kOk},
                                   {"fan", kStopped, Verdict::kCritical},
                                   {"threshold", kNoLimits, Verdict::kOk},
                                   {"threshold", kWithinLimits, Verdict::kOk}};
    for (const std::size_t limit : kAscending)
        states.push_back({"threshold", kLimitNames[limit], VerdictOfLimit(limit)});
    for (const StateMeaning& state : GenericStates())
        states.push_back({EventTypeName(state.type), state.words, state.verdict});
    for (const StateMeaning& state : SpecificStates())
        states.push_back({SensorTypeName(state.type), state.words, state.verdict});
    return states;
}

}  // namespace

std::string CountText(const Health& health) {
    std::string text = std::to_string(health.sensors.size()) + " sensors";
    const char* separator = ": ";
    for (const Verdict verdict : kWorstFirst) {
        text +=
            separator + std::to_string(With(health, verdict).size()) + ' ' + VerdictName(verdict);
        separator = ", ";
    }
    const std::size_t others = With(health, std::nullopt).size();
    return others == 0 ? text : text + ", " + std::to_string(others) + " not judged";
}

std::string ToText(const Health& health) {
    std::vector<Row> rows;
    for (const Verdict verdict : kWorstFirst)
        for (const JudgedSensor* judged : With(health, verdict)) rows.push_back(RowFor(*judged));
    for (const JudgedSensor* judged : With(health, std::nullopt)) rows.push_back(RowFor(*judged));
    std::vector<std::string> blocks{TableBlock({{"Verdict"},
                                                {"No.", Column::Align::kRight},
                                                {"Sensor"},
                                                {"Entity"},
                                                {"Reading", Column::Align::kRight},
                                                {"Reason"}},
                                               rows),
                                    NoteBlock(CountText(health))};
    if (!health.isComplete)
        blocks.push_back(NoteBlock("The BMC's sensor repository could not be read to its end."));
    return Section({std::string("Health: ") + VerdictName(health.verdict), ToneOf(health.verdict)},
                   blocks);
}

Json ToJson(const Health& health) {
    Json counts = Json::object();
    for (const auto& [member, verdict] :
         {std::pair<const char*, std::optional<Verdict>>{"ok", Verdict::kOk},
          {"warning", Verdict::kWarning},
          {"critical", Verdict::kCritical},
          {"unknown", Verdict::kUnknown},
          {"notJudged", std::nullopt}})
        counts[member] = With(health, verdict).size();
    Json list = Json::array();
    for (const JudgedSensor& judged : health.sensors) list.push_back(JudgedJson(judged));
    return {{"verdict", VerdictName(health.verdict)},
            {"status", static_cast<int>(health.verdict)},
            {"complete", health.isComplete},
            {"counts", counts},
            {"sensors", list}};
}

std::string StateTableText() {
    std::vector<Row> rows;
    for (const NamedState& state : AllStates())
        rows.push_back({state.kind, state.state, VerdictCell(state.verdict)});
    return Section("States and their verdicts",
                   {TableBlock({{"Kind or type"}, {"State"}, {"Verdict"}}, rows)});
}

Json StateTableJson() {
    Json list = Json::array();
    for (const NamedState& state : AllStates())
        list.push_back({{"kind", state.kind},
                        {"state", state.state},
                        {"verdict", VerdictName(state.verdict)}});
    return list;
}

}  // namespace tool
