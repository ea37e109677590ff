// SPDX-License-Identifier: MIT
//
// Checks a description as a whole and builds the machine from it.

#include "simulator/description/MachineDraft.h"

#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <iterator>

#include "simulator/base/CallText.h"
#include "simulator/description/RegularFile.h"
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

void RequireApart(const std::vector<MemoryPiece>& pieces) {
    for (auto piece = pieces.begin(); piece != pieces.end(); ++piece)
        for (auto before = pieces.begin(); before != piece; ++before)
            if (piece->address < std::uint64_t{before->address} + before->bytes.size() &&
                before->address < std::uint64_t{piece->address} + piece->bytes.size())
                piece->line.Fail("these bytes overlap those of line " +
                                 std::to_string(before->line.LineNumber()));
}

void PlaceSmbios(PhysicalMemory& memory, const SmbiosDraft& smbios) {
    switch (smbios.source) {
        case SmbiosDraft::Source::kDump:
            memory.PlaceDump(smbios.bytes);
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

std::filesystem::path MachineDraft::CaptureFile(MachineLine& line) const {
    std::filesystem::path path = folder / line.TakeName("the file name");
    std::error_code error;
    (void)std::filesystem::status(path, error);
    if (error) line.Fail(path.string() + ": " + error.message());
    return path;
}

Bytes MachineDraft::Capture(MachineLine& line) const {
    const std::string path = CaptureFile(line).string();
    if (IsNotRegular(path)) line.Fail(path + ": " + kNotRegular);
    std::ifstream stream(path, std::ios::binary);
    if (!stream) line.Fail(path + ": " + std::strerror(errno));
    Bytes bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (bytes.empty()) line.Fail(path + ": is empty");
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
    for (const auto& [path, error] : without) machine.Refuse(path, error);
}

}  // namespace sim
