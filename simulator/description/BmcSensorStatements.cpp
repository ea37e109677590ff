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
std::chrono::seconds takeMoment(MachineLine& line) {
    if (!line.takeIf("at")) return {};
    return std::chrono::seconds(line.number("the second", std::numeric_limits<int>::max()));
}

void failTwice(const MachineLine& line, const char* what, std::chrono::seconds from) {
    const std::string moment =
        from.count() == 0 ? "" : " from second " + std::to_string(from.count()) + " on";
    line.fail(std::string("the sensor has ") + what + moment + " already");
}

void readReadingStatement(MachineLine& line, MachineDraft& draft) {
    readReading(line, controllerOf(line, draft).timelines);
}

void readStatesStatement(MachineLine& line, MachineDraft& draft) {
    readStates(line, controllerOf(line, draft).timelines);
}

void readThresholds(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kAll = 0x3F;
    const std::uint8_t sensor = line.byte("the sensor number");
    BmcThresholds thresholds;
    thresholds.readable = line.byte("the readable thresholds", kAll);
    for (std::uint8_t& value : thresholds.values) value = line.byte("the raw threshold");
    if (!controllerOf(line, draft).thresholds.emplace(sensor, thresholds).second)
        line.fail("the sensor has thresholds already");
}

// The file need not be there: a person writes it when something is to change.
void readControl(MachineLine& line, MachineDraft& draft) {
    const std::string name = line.name("the file name");
    BmcDraft& bmc = controllerOf(line, draft);
    if (!bmc.controlFile.empty()) line.fail("the controller has a control file already");
    bmc.controlFile = draft.folder / name;
}

constexpr MachineStatement kStatements[] = {
    {"reading", readReadingStatement},
    {"states", readStatesStatement},
    {"thresholds", readThresholds},
    {"control", readControl},
};

}  // namespace

void readReading(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines) {
    BmcTimeline& timeline = timelines[line.byte("the sensor number")];
    const std::chrono::seconds from = takeMoment(line);
    BmcReading reading;
    reading.available = !line.takeIf("unavailable");
    if (reading.available || line.more()) reading.raw = line.byte("the raw reading");
    if (!timeline.readings.emplace(from, reading).second) failTwice(line, "a reading", from);
}

void readStates(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines) {
    BmcTimeline& timeline = timelines[line.byte("the sensor number")];
    const std::chrono::seconds from = takeMoment(line);
    BmcStates states{};
    states[0] = line.byte("the states 0 to 7");
    if (line.more()) states[1] = line.byte("the states 8 to 15");
    if (!timeline.states.emplace(from, states).second) failTwice(line, "states", from);
}

void readTimelineLine(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines) {
    if (!line.more()) return;
    const std::string word = line.word("the statement");
    if (word == "reading")
        readReading(line, timelines);
    else if (word == "states")
        readStates(line, timelines);
    else
        line.fail("the statement \"" + word + "\" is none of reading, states");
    line.end();
}

std::span<const MachineStatement> bmcSensorStatements() {
    return kStatements;
}

}  // namespace sim
