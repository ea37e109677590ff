// SPDX-License-Identifier: MIT
//
// What a machine description has said about the management controller so far.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_BMCDRAFT_H
#define TALVANE_SIMULATOR_DESCRIPTION_BMCDRAFT_H

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulator/bmc/Bmc.h"
#include "simulator/description/MachineLine.h"

namespace sim {

class Machine;

// One sensor data record, or a dump of many.
struct RecordDraft {
    std::optional<SdrRecord> sensor;  // from a `sensor` statement and its field statements
    Bytes bytes;                      // from a `record` statement, or the dump
    bool isDump;
    MachineLine line;
    std::map<std::string, int> fields = {};  // the record's field statements, and their lines
    BmcRecordQuirks quirks = {};
};

// The record that Get SDR names as the next one; the record it belongs to may be described later.
struct NextRecordDraft {
    std::uint16_t next;
    MachineLine line;
};

struct FaultDraft {
    std::string command;
    BmcFault fault;
    MachineLine line;
};

struct AnswerDraft {
    std::string command;
    std::uint8_t lun;
    Bytes data;
    Bytes answer;
    MachineLine line;
};

struct WatchdogDraft {
    std::uint8_t action = 0;
    std::uint16_t seconds = 0;
    bool runs = false;
    bool stops = true;
};

struct BmcDraft {
    explicit BmcDraft(const MachineLine& firstLine) : first(firstLine) {}

    MachineLine first;                // the first line about the controller
    std::optional<MachineLine> line;  // the `bmc` statement
    bool kcs = false;
    bool smic = false;
    std::uint8_t major = 1;
    std::uint8_t minorBcd = 0;
    std::vector<RecordDraft> records;
    bool sensorIsLast = false;  // whether field statements belong to the last record
    std::optional<std::uint16_t> recordCount;
    std::map<std::uint16_t, NextRecordDraft> nextRecords;
    std::map<std::uint8_t, BmcTimeline> timelines;
    std::map<std::uint8_t, BmcThresholds> thresholds;
    std::filesystem::path controlFile;
    Bytes inventory;
    std::map<std::uint8_t, BmcChannel> channels;
    std::optional<WatchdogDraft> watchdog;
    std::vector<FaultDraft> faults;
    std::vector<AnswerDraft> answers;
};

struct MachineDraft;

// The draft of the controller, for a statement about it. The first call creates the draft.
BmcDraft& ControllerOf(const MachineLine& line, MachineDraft& draft);

// Gives the machine the controller that the draft describes.
void BuildBmc(const BmcDraft& draft, Machine& machine);

}  // namespace sim

#endif
