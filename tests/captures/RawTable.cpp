// SPDX-License-Identifier: MIT
//
// Walks the bytes of a table.

#include "RawTable.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace captures {

namespace {

// Entry point fields (SMBIOS 5.2.1).
constexpr std::size_t kEntrySize = 31;
constexpr std::size_t kTableLength = 22;
constexpr std::size_t kTableAddressOffset = 24;
constexpr std::size_t kStructureCount = 28;

constexpr std::size_t kHeaderSize = 4;

std::uint16_t WordOf(std::span<const std::uint8_t> bytes, std::size_t offset) {
    if (offset + 1 >= bytes.size()) return offset < bytes.size() ? bytes[offset] : std::uint16_t{0};
    return static_cast<std::uint16_t>(bytes[offset] | (bytes[offset + 1] << 8));
}

// Cuts the structure at the front of `table` off. False when no whole one is left there.
bool TakeStructure(std::span<const std::uint8_t>& table, RawStructure& out) {
    if (table.size() < kHeaderSize || table[1] < kHeaderSize || table.size() < table[1])
        return false;
    const std::span<const std::uint8_t> formatted = table.first(table[1]);
    std::span<const std::uint8_t> rest = table.subspan(formatted.size());
    out = {formatted[0], WordOf(formatted, 2), Bytes(formatted.begin(), formatted.end()), {}};
    while (!rest.empty() && rest[0] != 0) {
        const auto end = std::ranges::find(rest, std::uint8_t{0});
        if (end == rest.end()) return false;
        out.strings.emplace_back(rest.begin(), end);
        rest = rest.subspan(out.strings.back().size() + 1);
    }
    const std::size_t terminator = out.strings.empty() ? 2 : 1;
    if (rest.size() < terminator) return false;
    table = rest.subspan(terminator);
    return true;
}

std::span<const std::uint8_t> TableOfDump(std::span<const std::uint8_t> dump) {
    if (dump.size() < kEntrySize || dump[0] != '_' || dump[1] != 'S' || dump[2] != 'M')
        throw std::runtime_error("not a dump with an SMBIOS entry point at its start");
    const std::size_t address = WordOf(dump, kTableAddressOffset);
    const std::size_t length = WordOf(dump, kTableLength);
    if (address + length > dump.size())
        throw std::runtime_error("a dump that ends before its structure table does");
    return dump.subspan(address, length);
}

}  // namespace

std::uint8_t RawStructure::Byte(std::size_t offset) const {
    return offset < formatted.size() ? formatted[offset] : std::uint8_t{0};
}

std::uint16_t RawStructure::Word(std::size_t offset) const {
    return WordOf(formatted, offset);
}

std::uint32_t RawStructure::Dword(std::size_t offset) const {
    return Word(offset) | (std::uint32_t{Word(offset + 2)} << 16);
}

std::optional<std::string> RawStructure::String(std::size_t offset) const {
    const std::size_t number = Byte(offset);
    if (number == 0 || number > strings.size()) return std::nullopt;
    return strings[number - 1];
}

std::vector<RawStructure> StructuresOfDump(std::span<const std::uint8_t> dump) {
    std::span<const std::uint8_t> table = TableOfDump(dump);
    const std::size_t count = WordOf(dump, kStructureCount);
    std::vector<RawStructure> structures;
    for (RawStructure next; structures.size() < count && TakeStructure(table, next);)
        structures.push_back(next);
    return structures;
}

unsigned CountPastDamage(std::span<const std::uint8_t> dump, std::uint8_t type) {
    const std::span<const std::uint8_t> table = TableOfDump(dump);
    unsigned found = 0;
    std::size_t at = 0;
    for (unsigned left = WordOf(dump, kStructureCount); left != 0 && at < table.size(); --left) {
        found += table[at] == type;
        at += at + 1 < table.size() ? table[at + 1] : 0;
        while (at + 1 < table.size() && WordOf(table, at) != 0) ++at;
        at += 2;
    }
    return found;
}

Bytes FileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}

}  // namespace captures
