// SPDX-License-Identifier: MIT
//
// A management controller while its description is being read.
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

// A sensor data record of its own, or a dump of many.
struct RecordDraft {
    std::optional<SdrRecord> sensor;  // of a sensor statement, whose fields follow
    Bytes bytes;                      // of a record statement, or a dump
    bool isDump;
    MachineLine line;
    std::map<std::string, int> fields = {};  // field statements of the record, and their lines
    BmcRecordQuirks quirks = {};
};

// What is said of a record that may follow further down.
struct NextRecordDraft {
    std::uint16_t next;
    MachineLine line;
};

struct FaultDraft {
    std::string command;
    BmcFault fault;
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
    std::optional<MachineLine> line;  // the one that says that there is one
    bool kcs = false;
    bool smic = false;
    std::uint8_t major = 1;
    std::uint8_t minorBcd = 0;
    std::vector<RecordDraft> records;
    bool sensorIsLast = false;  // field statements belong to the last record
    std::optional<std::uint16_t> recordCount;
    std::map<std::uint16_t, NextRecordDraft> nextRecords;
    std::map<std::uint8_t, BmcTimeline> timelines;
    std::map<std::uint8_t, BmcThresholds> thresholds;
    std::filesystem::path controlFile;
    Bytes inventory;
    std::map<std::uint8_t, BmcChannel> channels;
    std::optional<WatchdogDraft> watchdog;
    std::vector<FaultDraft> faults;
};

struct MachineDraft;

// The controller that a statement is about, whether or not it was said that there is one.
BmcDraft& ControllerOf(const MachineLine& line, MachineDraft& draft);

// Gives the machine the described controller.
void BuildBmc(const BmcDraft& draft, Machine& machine);

}  // namespace sim

#endif
