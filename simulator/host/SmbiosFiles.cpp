// SPDX-License-Identifier: MIT
//
// Cuts a table and puts it after its entry point, which then points there.

#include "simulator/host/SmbiosFiles.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace sim {
namespace {

constexpr std::size_t kHeaderSize = 4;  // type, length, handle (SMBIOS 6.1.2)
constexpr std::size_t kLengthAt = 1;
constexpr std::size_t kTableOffset = 32;  // in a dump

// An entry point: where it states the table's length and its address, in how many bytes.
struct EntryPointLayout {
    std::string_view anchor;
    std::size_t size;
    std::size_t lengthAt;
    unsigned lengthBytes;
    std::size_t addressAt;
    unsigned addressBytes;
};

constexpr EntryPointLayout kEntryPoints[] = {
    {"_SM3_", 24, 0x0C, 4, 0x10, 8},  // SMBIOS 5.2.2
    {"_SM_", 31, 0x16, 2, 0x18, 4},   // SMBIOS 5.2.1
    {"_DMI_", 15, 0x06, 2, 0x08, 4},  // its second half, alone
};

void PutNumber(Bytes& bytes, std::size_t at, unsigned size, std::size_t value) {
    for (unsigned i = 0; i < size; ++i) {
        const std::size_t rest = i < sizeof value ? value >> (8 * i) : 0;
        bytes[at + i] = static_cast<std::uint8_t>(rest & 0xFF);
    }
}

// The offset after the structure at `at` and its strings; past the end when it is not whole.
std::size_t EndOfStructure(std::span<const std::uint8_t> table, std::size_t at) {
    std::size_t end = at + std::max<std::size_t>(table[at + kLengthAt], kHeaderSize);
    while (end + 1 < table.size() && (table[end] != 0 || table[end + 1] != 0)) ++end;
    return end + 2;
}

}  // namespace

std::span<const std::uint8_t> WholeStructures(std::span<const std::uint8_t> table,
                                              std::size_t limit) {
    if (table.size() <= limit) return table;
    std::size_t whole = 0;
    while (whole + kHeaderSize <= table.size()) {
        const std::size_t end = EndOfStructure(table, whole);
        if (end > limit) break;
        whole = end;
    }
    return table.first(whole);
}

Bytes SmbiosDump(const Bytes& entryPoint, std::span<const std::uint8_t> table) {
    for (const EntryPointLayout& layout : kEntryPoints) {
        const bool fits = entryPoint.size() >= layout.size && entryPoint.size() <= kTableOffset;
        if (!fits || !std::equal(layout.anchor.begin(), layout.anchor.end(), entryPoint.begin()))
            continue;
        Bytes dump = entryPoint;
        PutNumber(dump, layout.lengthAt, layout.lengthBytes, table.size());
        PutNumber(dump, layout.addressAt, layout.addressBytes, kTableOffset);
        dump.resize(kTableOffset);
        dump.insert(dump.end(), table.begin(), table.end());
        return dump;
    }
    throw std::runtime_error("the entry point is none of _SM_, _SM3_ and _DMI_");
}

}  // namespace sim
