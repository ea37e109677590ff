// SPDX-License-Identifier: MIT
//
// From a description to a machine.

#include "simulator/description/MachineDraft.h"

#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <iterator>

#include "simulator/base/CallText.h"
#include "simulator/machine/Machine.h"

namespace sim {
namespace {

// Whether this many bytes at the address are memory of the machine.
void requireMemory(const MachineLine& line, const PhysicalMemory& memory, std::uint64_t address,
                   std::size_t size) {
    if (address + size > memory.size())
        line.fail(std::to_string(size) + " bytes at " + hex(address) +
                  " are past the end of the memory at " + hex(memory.size()));
}

void requireApart(const std::vector<MemoryPiece>& pieces) {
    for (auto piece = pieces.begin(); piece != pieces.end(); ++piece)
        for (auto before = pieces.begin(); before != piece; ++before)
            if (piece->address < std::uint64_t{before->address} + before->bytes.size() &&
                before->address < std::uint64_t{piece->address} + piece->bytes.size())
                piece->line.fail("these bytes overlap those of line " +
                                 std::to_string(before->line.number()));
}

void placeSmbios(PhysicalMemory& memory, const SmbiosDraft& smbios) {
    switch (smbios.source) {
        case SmbiosDraft::Source::dump:
            memory.placeDump(smbios.bytes);
            break;
        case SmbiosDraft::Source::segment:
            memory.placeSegment(smbios.bytes);
            break;
        case SmbiosDraft::Source::text:
            memory.placeSmbios(smbios.table.bytes(), smbios.placement);
            break;
    }
}

// The first megabyte holds the entry point; a table may lie elsewhere.
void requireSmbiosMemory(const SmbiosDraft& smbios, const PhysicalMemory& memory) {
    requireMemory(smbios.line, memory, 0xF0000, 0x10000);
    if (smbios.source == SmbiosDraft::Source::text && smbios.placement.table != 0)
        requireMemory(smbios.line, memory, smbios.placement.table, smbios.table.bytes().size());
}

}  // namespace

std::filesystem::path MachineDraft::captureFile(MachineLine& line) const {
    std::filesystem::path path = folder / line.name("the file name");
    std::error_code error;
    (void)std::filesystem::status(path, error);
    if (error) line.fail(path.string() + ": " + error.message());
    return path;
}

Bytes MachineDraft::capture(MachineLine& line) const {
    const std::string path = captureFile(line).string();
    std::ifstream stream(path, std::ios::binary);
    if (!stream) line.fail(path + ": " + std::strerror(errno));
    if (!std::filesystem::is_regular_file(path)) line.fail(path + ": is no file");
    Bytes bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (bytes.empty()) line.fail(path + ": is empty");
    return bytes;
}

void MachineDraft::build(Machine& machine) const {
    PhysicalMemory& memory = machine.memory();
    if (memorySize) memory.resize(memorySize->first);
    if (smbios) {
        requireSmbiosMemory(*smbios, memory);
        try {
            placeSmbios(memory, *smbios);
        } catch (const std::exception& error) {
            smbios->line.fail(error.what());
        }
    }
    requireApart(pieces);
    for (const MemoryPiece& piece : pieces) {
        requireMemory(piece.line, memory, piece.address, piece.bytes.size());
        memory.write(piece.address, piece.bytes);
    }
    if (bmc) buildBmc(*bmc, machine);
    buildInventory(*this, machine);
    for (const auto& [path, error] : without) machine.refuse(path, error);
}

}  // namespace sim
