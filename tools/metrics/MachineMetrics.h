// SPDX-License-Identifier: MIT
//
// All metrics of one machine as a page.
#ifndef TALVANE_TOOLS_METRICS_MACHINEMETRICS_H
#define TALVANE_TOOLS_METRICS_MACHINEMETRICS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/library/IdeDrives.h"
#include "tools/records/Bmc.h"
#include "tools/records/Board.h"
#include "tools/records/Load.h"
#include "tools/records/Memory.h"
#include "tools/records/Partitions.h"
#include "tools/records/Pci.h"
#include "tools/records/Power.h"
#include "tools/records/Processors.h"
#include "tools/records/System.h"
#include "tools/sensors/Judgement.h"

namespace tool {

// A source and why it could not be read; an empty problem for one that was.
struct SourceState {
    std::string name;
    std::string problem;
};

// What was read of a machine; nothing where its source could not be read.
struct MachineState {
    std::optional<System> system;
    std::optional<Board> board;
    std::optional<Processors> processors;
    std::optional<Memory> memory;
    std::optional<Power> power;
    std::optional<Health> health;
    std::optional<Bmc> bmc;
    std::optional<PciFunctions> pci;
    std::optional<Drives> drives;
    std::optional<Partitions> partitions;
    Load load;
    std::vector<SourceState> sources;
    std::string version;           // of the tool
    std::int64_t collectedAt = 0;  // seconds since 1970 UTC
    double bmcSeconds = 0;         // that it took to ask the BMC
    double seconds = 0;            // that it took to read everything
};

// The text exposition format. A part that is not there has no metrics but those that say so.
std::string ToMetrics(const MachineState& machine);

}  // namespace tool

#endif
