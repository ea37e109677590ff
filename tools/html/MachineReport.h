// SPDX-License-Identifier: MIT
//
// Everything that the page shows.
#ifndef TALVANE_TOOLS_HTML_MACHINEREPORT_H
#define TALVANE_TOOLS_HTML_MACHINEREPORT_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Way.h"
#include "tools/records/Bmc.h"
#include "tools/records/Board.h"
#include "tools/records/Drives.h"
#include "tools/records/Fans.h"
#include "tools/records/Load.h"
#include "tools/records/Memory.h"
#include "tools/records/Partitions.h"
#include "tools/records/Pci.h"
#include "tools/records/Ports.h"
#include "tools/records/Power.h"
#include "tools/records/Processors.h"
#include "tools/records/System.h"
#include "tools/records/Watchdog.h"
#include "tools/sensors/Judgement.h"

namespace tool {

// Why something is missing.
struct UnreadSource {
    std::string name;
    std::string message;
};

// Nothing for a record whose source could not be read.
struct MachineReport {
    std::string time;     // "2026-11-22T10:35:00Z"
    std::string version;  // of the tool
    std::optional<Health> health;
    std::optional<System> system;
    std::optional<Board> board;
    std::optional<Processors> processors;
    std::optional<Memory> memory;
    std::optional<Ports> ports;
    std::optional<Power> power;
    std::optional<Fans> fans;
    std::optional<Watchdog> watchdog;
    std::optional<Bmc> bmc;
    std::optional<PciFunctions> pci;
    std::optional<Drives> drives;
    std::optional<Partitions> partitions;
    std::optional<Load> load;
    std::vector<UnreadSource> notRead;
    std::vector<Way> ways;  // none on a simulated server
};

}  // namespace tool

#endif
