// SPDX-License-Identifier: MIT
//
// Writes an SMBIOS structure table, structure by structure.
//
//     SmbiosTable table;
//     table.Add(4, 0x0400, 35).Byte(24, 0x41).Word(20, 3600).String(7, "Intel");
//     server.GetMemory().PlaceSmbios(table.Image());
#ifndef TALVANE_SIMULATOR_MACHINE_SMBIOSTABLE_H
#define TALVANE_SIMULATOR_MACHINE_SMBIOSTABLE_H

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "simulator/base/Bytes.h"

namespace sim {

// One structure. Offsets count from the header's first byte, as in the tables of the standard.
// std::out_of_range for a field past the formatted area.
class SmbiosStructure {
public:
    SmbiosStructure(std::uint8_t type, std::uint16_t handle, std::uint8_t length);

    SmbiosStructure& Byte(std::size_t offset, std::uint8_t value);
    SmbiosStructure& Word(std::size_t offset, std::uint16_t value);
    SmbiosStructure& Dword(std::size_t offset, std::uint32_t value);
    SmbiosStructure& String(std::size_t offset,
                            std::string_view text);  // adds it and stores its number
    SmbiosStructure& String(std::string_view text);  // only adds it

    // The whole structure as it lies in memory, with its strings.
    Bytes Image() const;

private:
    Bytes formatted_;
    std::vector<std::string> strings_;
};

class SmbiosTable {
public:
    // The reference stays valid while structures are added.
    SmbiosStructure& Add(std::uint8_t type, std::uint16_t handle, std::uint8_t length);

    // Appends bytes as they are, for tables that no firmware should have. They do not count as a
    // structure.
    SmbiosTable& Raw(std::span<const std::uint8_t> bytes);

    // The number of structures, and the whole table as it lies in memory.
    std::size_t Structures() const;
    Bytes Image() const;

private:
    using Part = std::variant<SmbiosStructure, Bytes>;
    std::deque<Part> parts_;
};

}  // namespace sim

#endif
