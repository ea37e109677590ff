// SPDX-License-Identifier: MIT
//
// The structure table of a capture, byte by byte: for the few facts that dmidecode does not
// print, such as the number of a string or the status of an empty socket.
#ifndef TALVANE_TESTS_RAWTABLE_H
#define TALVANE_TESTS_RAWTABLE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace captures {

using Bytes = std::vector<std::uint8_t>;

// Where entry points are looked for: at each paragraph of the BIOS's segment up to its last one.
inline constexpr std::size_t kSegmentScanned = 0xFFF0;
inline constexpr std::size_t kParagraph = 16;

struct RawStructure {
    std::uint8_t type = 0;
    std::uint16_t handle = 0;
    Bytes formatted;
    std::vector<std::string> strings;

    std::uint8_t Byte(std::size_t offset) const;  // 0 past the formatted area
    std::uint16_t Word(std::size_t offset) const;
    std::uint32_t Dword(std::size_t offset) const;

    // The string whose number stands at `offset`; nothing for number 0 or one past the last.
    std::optional<std::string> String(std::size_t offset) const;
};

// The structures of what `dmidecode --dump-bin` wrote, up to the first one that is damaged.
// Throws std::runtime_error when the bytes are no such dump.
std::vector<RawStructure> StructuresOfDump(std::span<const std::uint8_t> dump);

// How many structures of a type are found by a walk that does not stop at damage: a structure of an
// impossible length, too, ends at the next two zero bytes after that length.
unsigned CountPastDamage(std::span<const std::uint8_t> dump, std::uint8_t type);

// A whole file. Throws std::runtime_error with its name when it cannot be read.
Bytes FileBytes(const std::string& path);

}  // namespace captures

#endif
