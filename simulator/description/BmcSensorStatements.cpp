// SPDX-License-Identifier: MIT
//
// The statements about what sensors show: readings and states over time, thresholds, and the file
// that changes them.

#include "simulator/description/BmcSensorStatements.h"

#include <limits>

#include "simulator/description/BmcDraft.h"
#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

// "at SECOND", the beginning when it is not there.
std::chrono::seconds TakeMoment(MachineLine& line) {
    if (!line.TakeIf("at")) return {};
    return std::chrono::seconds(line.Number("the second", std::numeric_limits<int>::max()));
}

void FailTwice(const MachineLine& line, const char* what, std::chrono::seconds from) {
    const std::string moment =
        from.count() == 0 ? "" : " from second " + std::to_string(from.count()) + " on";
    line.Fail(std::string("the sensor has ") + what + moment + " already");
}

void ReadReadingStatement(MachineLine& line, MachineDraft& draft) {
    ReadReading(line, ControllerOf(line, draft).timelines);
}

void ReadStatesStatement(MachineLine& line, MachineDraft& draft) {
    ReadStates(line, ControllerOf(line, draft).timelines);
}

void ReadThresholds(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kAll = 0x3F;
    const std::uint8_t sensor = line.Byte("the sensor number");
    BmcThresholds thresholds;
    thresholds.readable = line.Byte("the readable thresholds", kAll);
    for (std::uint8_t& value : thresholds.values) value = line.Byte("the raw threshold");
    if (!ControllerOf(line, draft).thresholds.emplace(sensor, thresholds).second)
        line.Fail("the sensor has thresholds already");
}

// The file need not be there: a person writes it when something is to change.
void ReadControl(MachineLine& line, MachineDraft& draft) {
    const std::string name = line.Name("the file name");
    BmcDraft& bmc = ControllerOf(line, draft);
    if (!bmc.controlFile.empty()) line.Fail("the controller has a control file already");
    bmc.controlFile = draft.folder / name;
}

constexpr MachineStatement kStatements[] = {
    {"reading", ReadReadingStatement},
    {"states", ReadStatesStatement},
    {"thresholds", ReadThresholds},
    {"control", ReadControl},
};

}  // namespace

void ReadReading(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines) {
    BmcTimeline& timeline = timelines[line.Byte("the sensor number")];
    const std::chrono::seconds from = TakeMoment(line);
    BmcReading reading;
    reading.available = !line.TakeIf("unavailable");
    if (reading.available || line.More()) reading.raw = line.Byte("the raw reading");
    if (!timeline.readings.emplace(from, reading).second) FailTwice(line, "a reading", from);
}

void ReadStates(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines) {
    BmcTimeline& timeline = timelines[line.Byte("the sensor number")];
    const std::chrono::seconds from = TakeMoment(line);
    BmcStates states{};
    states[0] = line.Byte("the states 0 to 7");
    if (line.More()) states[1] = line.Byte("the states 8 to 15");
    if (!timeline.states.emplace(from, states).second) FailTwice(line, "states", from);
}

void ReadTimelineLine(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines) {
    if (!line.More()) return;
    const std::string word = line.Word("the statement");
    if (word == "reading")
        ReadReading(line, timelines);
    else if (word == "states")
        ReadStates(line, timelines);
    else
        line.Fail("the statement \"" + word + "\" is none of reading, states");
    line.End();
}

std::span<const MachineStatement> BmcSensorStatements() {
    return kStatements;
}

}  // namespace sim
