// SPDX-License-Identifier: MIT
//
// What a machine description has said so far. Statements, grouped by topic, fill it in any order.
// Build() then makes the checks that need the whole description, and builds the machine.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_MACHINEDRAFT_H
#define TALVANE_SIMULATOR_DESCRIPTION_MACHINEDRAFT_H

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/description/BmcDraft.h"
#include "simulator/description/InventoryDraft.h"
#include "simulator/description/MachineFiles.h"
#include "simulator/description/MachineLine.h"
#include "simulator/host/Ways.h"
#include "simulator/machine/PhysicalMemory.h"
#include "simulator/machine/SmbiosTable.h"

namespace sim {

class Machine;

// Bytes for an address in memory.
struct MemoryPiece {
    std::uint32_t address;
    Bytes bytes;
    MachineLine line;
};

// Where a machine's SMBIOS comes from: one of three sources, named in `line`.
struct SmbiosDraft {
    enum class Source { kDump, kSegment, kText };
    Source source;
    MachineLine line;
    Bytes bytes;                        // the dump or the segment
    SmbiosPlacement placement;          // for a text; of a dump, its anchor alone
    SmbiosTable table;                  // for a text
    SmbiosStructure* last = nullptr;    // the structure that field statements belong to
    std::map<std::size_t, int> fields;  // its bytes that were set, and the lines that set them
};

struct MachineDraft {
    explicit MachineDraft(MachineFiles theFiles) : files(std::move(theFiles)) {}

    MachineFiles files;
    std::optional<std::pair<std::uint64_t, int>>
        memorySize;  // the size, and the line of the statement
    std::vector<MemoryPiece> pieces;
    std::optional<SmbiosDraft> smbios;
    std::optional<BmcDraft> bmc;
    std::map<PciLocation, PciDraft> pci;
    std::map<char, DriveDraft> drives;  // by letter
    bool isWithoutDrives = false;       // /proc/ide is there, and holds none
    std::vector<EntryDraft> entries;
    LoadDraft load;
    std::map<std::string, int> without;  // errno, by device
    std::vector<AreaWay> ways;

    // The bytes of the capture that the line names, in the machine's folder or archive. Takes the
    // name off the line.
    Bytes Capture(MachineLine& line) const;

    // The bytes of the capture of this name; `line` names it. A capture is not empty.
    Bytes CaptureNamed(const std::string& name, const MachineLine& line) const;

    void Build(Machine& machine) const;
};

// A statement: its first word, and the function that reads the rest of its line.
struct MachineStatement {
    std::string_view word;
    void (*read)(MachineLine& line, MachineDraft& draft);
};

// Gives the machine its PCI functions, drives and load.
void BuildInventory(const MachineDraft& draft, Machine& machine);

// The statements by topic.
std::span<const MachineStatement> MemoryStatements();
std::span<const MachineStatement> SmbiosStatements();
std::span<const MachineStatement> DeviceStatements();
std::span<const MachineStatement> BmcStatements();
std::span<const MachineStatement> BmcRecordStatements();
std::span<const MachineStatement> BmcReadingStatements();
std::span<const MachineStatement> BmcFaultStatements();
std::span<const MachineStatement> PciStatements();
std::span<const MachineStatement> DriveStatements();
std::span<const MachineStatement> LoadStatements();

}  // namespace sim

#endif
