// SPDX-License-Identifier: MIT
//
// Checks a description as a whole and builds the machine from it.

#include "simulator/description/MachineDraft.h"

#include <exception>
#include <iterator>
#include <map>
#include <stdexcept>

#include "simulator/base/CallText.h"
#include "simulator/machine/Machine.h"

namespace sim {
namespace {

// Fails unless all these bytes lie within the memory of the machine.
void RequireInMemory(const MachineLine& line, const PhysicalMemory& memory, std::uint64_t address,
                     std::size_t size) {
    if (address + size > memory.Size())
        line.Fail(std::to_string(size) + " bytes at " + Hex(address) +
                  " are past the end of the memory at " + Hex(memory.Size()));
}

// A description may have very many pieces, so each is compared with its neighbours alone.
void RequireApart(const std::vector<MemoryPiece>& pieces) {
    std::map<std::uint32_t, const MemoryPiece*> before;  // by address
    const auto requireOrder = [](const MemoryPiece& low, const MemoryPiece& high,
                                 const MemoryPiece& piece, const MemoryPiece& other) {
        if (high.address < std::uint64_t{low.address} + low.bytes.size())
            piece.line.Fail("these bytes overlap those of line " +
                            std::to_string(other.line.LineNumber()));
    };
    for (const MemoryPiece& piece : pieces) {
        const auto above = before.lower_bound(piece.address);
        if (above != before.begin()) {
            const MemoryPiece& below = *std::prev(above)->second;
            requireOrder(below, piece, piece, below);
        }
        if (above != before.end()) requireOrder(piece, *above->second, piece, *above->second);
        before.emplace(piece.address, &piece);
    }
}

void PlaceSmbios(PhysicalMemory& memory, const SmbiosDraft& smbios) {
    switch (smbios.source) {  // LCOV_EXCL_BR_LINE: each source has a case
        case SmbiosDraft::Source::kDump:
            memory.PlaceDump(smbios.bytes, smbios.placement.anchor);
            break;
        case SmbiosDraft::Source::kSegment:
            memory.PlaceSegment(smbios.bytes);
            break;
        case SmbiosDraft::Source::kText:
            memory.PlaceSmbios(smbios.table.Image(), smbios.placement);
            break;
    }
}

// The entry point lies in the first megabyte; a table may lie elsewhere.
void RequireSmbiosMemory(const SmbiosDraft& smbios, const PhysicalMemory& memory) {
    RequireInMemory(smbios.line, memory, 0xF0000, 0x10000);
    if (smbios.source == SmbiosDraft::Source::kText && smbios.placement.table != 0)
        RequireInMemory(smbios.line, memory, smbios.placement.table, smbios.table.Image().size());
}

}  // namespace

Bytes MachineDraft::Capture(MachineLine& line) const {
    return CaptureNamed(line.TakeName("the file name"), line);
}

Bytes MachineDraft::CaptureNamed(const std::string& name, const MachineLine& line) const {
    Bytes bytes;
    try {
        bytes = files.Read(name);
    } catch (const std::runtime_error& error) {
        line.Fail(error.what());
    }
    if (bytes.empty()) line.Fail(files.PathOf(name).string() + ": is empty");
    return bytes;
}

void MachineDraft::Build(Machine& machine) const {
    PhysicalMemory& memory = machine.GetMemory();
    if (memorySize) memory.Resize(memorySize->first);
    if (smbios) {
        RequireSmbiosMemory(*smbios, memory);
        try {
            PlaceSmbios(memory, *smbios);
        } catch (const std::exception& error) {
            smbios->line.Fail(error.what());
        }
    }
    RequireApart(pieces);
    for (const MemoryPiece& piece : pieces) {
        RequireInMemory(piece.line, memory, piece.address, piece.bytes.size());
        memory.Write(piece.address, piece.bytes);
    }
    if (bmc) BuildBmc(*bmc, machine);
    BuildInventory(*this, machine);
    machine.SetWays(EncodeWays(ways));
    for (const auto& [device, error] : without) {
        if (Machine::IsMachinePath(device))
            machine.Refuse(device, error);
        else
            machine.RefusePorts(error);  // of what has no path, a machine can lack the ports alone
    }
}

}  // namespace sim
