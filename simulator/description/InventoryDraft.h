// SPDX-License-Identifier: MIT
//
// What a machine description has said about PCI functions, drives and load so far.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_INVENTORYDRAFT_H
#define TALVANE_SIMULATOR_DESCRIPTION_INVENTORYDRAFT_H

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulator/description/MachineLine.h"
#include "simulator/machine/FreeProgram.h"
#include "simulator/machine/IdeDrive.h"
#include "simulator/machine/PciBus.h"
#include "simulator/machine/ProcStat.h"

namespace sim {

struct PciDraft {
    Bytes configuration;
    int line;
};

struct DriveDraft {
    MachineLine line;
    IdeDrive drive = {};
    std::optional<std::uint64_t> size = {};       // in sectors
    std::filesystem::path image = {};             // the image file; empty: a disk of zeroes
    std::optional<Bytes> archivedImage = {};      // the image in an archive
    bool hasOwnFiles = false;                     // `drive` has all files of /proc/ide already
    std::map<std::uint64_t, Bytes> sectors = {};  // the sectors that are not zero
};

// The texts of an identity block.
struct DriveTexts {
    std::string model;
    std::string serial;
    std::string firmware;
};

// An entry of a partition table, and its place on a drive.
struct EntryDraft {
    char drive;
    std::uint64_t sector;
    unsigned number;
    TableEntry entry;
    MachineLine line;
};

struct LoadDraft {
    std::map<unsigned, ProcStat::Rates> cpus;
    std::map<std::chrono::seconds, std::string> stat;
    bool statContinues = false;
    std::optional<FreeProgram> free;
};

}  // namespace sim

#endif
