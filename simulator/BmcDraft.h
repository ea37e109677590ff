// SPDX-License-Identifier: MIT
//
// A management controller while its description is being read.
#ifndef TALVANE_SIMULATOR_BMCDRAFT_H
#define TALVANE_SIMULATOR_BMCDRAFT_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Bmc.h"
#include "MachineLine.h"

namespace sim {

class Machine;

// A sensor data record of its own, or a dump of many.
struct RecordDraft {
    std::optional<SdrRecord> record;
    Bytes dump;
    MachineLine line;
    std::map<std::string, int> fields;  // field statements of the record, and their lines
};

struct SensorDraft {
    std::optional<std::uint8_t> reading;
    std::optional<std::pair<std::uint8_t, std::uint8_t>> states;
    std::optional<BmcThresholds> thresholds;
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
    bool recordIsLast = false;  // field statements belong to the last record
    std::map<std::uint8_t, SensorDraft> sensors;
    Bytes inventory;
    std::map<std::uint8_t, BmcChannel> channels;
};

// Gives the machine the described controller.
void buildBmc(const BmcDraft& draft, Machine& machine);

}  // namespace sim

#endif
