// SPDX-License-Identifier: MIT
//
// The statements about what sensors show: reading, states, thresholds, and control, which names the
// file that changes readings and states. The sensor statement itself is in BmcRecordStatements.cpp.

#include "simulator/description/BmcReadingStatements.h"

#include <limits>

#include "simulator/description/BmcDraft.h"
#include "simulator/description/MachineDraft.h"
#include "simulator/description/RegularFile.h"

namespace sim {
namespace {

// Takes "at SECOND" off the line; the moment is 0 when the line does not go on with it.
std::chrono::seconds TakeMoment(MachineLine& line) {
    if (!line.TakeIf("at")) return {};
    return std::chrono::seconds(line.TakeNumber("the second", std::numeric_limits<int>::max()));
}

void FailTwice(const MachineLine& line, const char* what, std::chrono::seconds from) {
    const std::string moment =
        from.count() == 0 ? "" : " from second " + std::to_string(from.count()) + " on";
    line.Fail(std::string("the sensor has ") + what + moment + " already");
}

// Results not used: a description may say what a sensor shows that is in no record.
void ReadReadingStatement(MachineLine& line, MachineDraft& draft) {
    (void)ReadReading(line, ControllerOf(line, draft).timelines);
}

void ReadStatesStatement(MachineLine& line, MachineDraft& draft) {
    (void)ReadStates(line, ControllerOf(line, draft).timelines);
}

void ReadThresholds(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kAll = 0x3F;
    const std::uint8_t sensor = line.TakeByte("the sensor number");
    BmcThresholds thresholds;
    thresholds.readable = line.TakeByte("the readable thresholds", kAll);
    for (std::uint8_t& value : thresholds.values) value = line.TakeByte("the raw threshold");
    if (!ControllerOf(line, draft).thresholds.emplace(sensor, thresholds).second)
        line.Fail("the sensor has thresholds already");
}

// The file need not exist: a person writes it when something is to change.
void ReadControl(MachineLine& line, MachineDraft& draft) {
    const std::string name = line.TakeName("the file name");
    BmcDraft& bmc = ControllerOf(line, draft);
    if (!bmc.controlFile.empty()) line.Fail("the controller has a control file already");
    if (draft.files.IsArchive()) line.Fail("a machine in an archive has no control file");
    bmc.controlFile = draft.files.PathOf(name);
    if (IsNotRegular(bmc.controlFile)) line.Fail(bmc.controlFile.string() + ": " + kNotRegular);
}

constexpr MachineStatement kBmcReadingStatements[] = {
    {"reading", ReadReadingStatement},
    {"states", ReadStatesStatement},
    {"thresholds", ReadThresholds},
    {"control", ReadControl},
};

}  // namespace

std::uint8_t ReadReading(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines) {
    const std::uint8_t sensor = line.TakeByte("the sensor number");
    BmcTimeline& timeline = timelines[sensor];
    const std::chrono::seconds from = TakeMoment(line);
    BmcReading reading;
    reading.available = !line.TakeIf("unavailable");
    if (reading.available || line.HasMore()) reading.raw = line.TakeByte("the raw reading");
    if (!timeline.readings.emplace(from, reading).second) FailTwice(line, "a reading", from);
    return sensor;
}

std::uint8_t ReadStates(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines) {
    const std::uint8_t sensor = line.TakeByte("the sensor number");
    BmcTimeline& timeline = timelines[sensor];
    const std::chrono::seconds from = TakeMoment(line);
    BmcStates states{};
    states[0] = line.TakeByte("the states 0 to 7");
    if (line.HasMore()) states[1] = line.TakeByte("the states 8 to 15");
    if (!timeline.states.emplace(from, states).second) FailTwice(line, "states", from);
    return sensor;
}

std::optional<std::uint8_t> ReadTimelineLine(MachineLine& line,
                                             std::map<std::uint8_t, BmcTimeline>& timelines) {
    if (!line.HasMore()) return std::nullopt;
    const std::string word = line.TakeWord("the statement");
    if (word != "reading" && word != "states")
        line.Fail("the statement \"" + word + "\" is none of reading, states");
    const std::uint8_t sensor =
        word == "reading" ? ReadReading(line, timelines) : ReadStates(line, timelines);
    line.ExpectEnd();
    return sensor;
}

std::span<const MachineStatement> BmcReadingStatements() {
    return kBmcReadingStatements;
}

}  // namespace sim
