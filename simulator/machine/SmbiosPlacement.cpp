// SPDX-License-Identifier: MIT
//
// Places SMBIOS tables with their entry points: the _SM_ one (DSP0134, 5.2.1), the older _DMI_ one,
// which is the second half of it, and those of table dumps.

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <string_view>

#include "simulator/machine/PhysicalMemory.h"

namespace sim {
namespace {

constexpr std::uint32_t kSegment = 0xF0000;
constexpr std::uint32_t kSegmentEnd = 0x100000;
constexpr std::uint32_t kLowerSegment = 0xE0000;

constexpr std::size_t kEntryPointSize = 31;  // _SM_
constexpr std::size_t kDmiOffset = 16;       // the _DMI_ half within the _SM_ entry point
constexpr std::size_t kDmiSize = 15;         // _DMI_
constexpr std::size_t kSm3Size = 24;         // _SM3_

using Entry = std::array<std::uint8_t, kEntryPointSize>;

std::uint32_t ReadNumber(std::span<const std::uint8_t> bytes, std::size_t offset, unsigned size) {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < size; ++i) value |= std::uint32_t{bytes[offset + i]} << (8 * i);
    return value;
}

void SetNumber(std::span<std::uint8_t> bytes, std::size_t offset, unsigned size,
               std::uint32_t value) {
    for (unsigned i = 0; i < size; ++i)
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

bool HasAnchor(std::span<const std::uint8_t> bytes, std::string_view anchor) {
    return bytes.size() >= anchor.size() && std::equal(anchor.begin(), anchor.end(), bytes.begin());
}

void SetAnchor(std::span<std::uint8_t> bytes, std::string_view anchor) {
    std::copy(anchor.begin(), anchor.end(), bytes.begin());
}

// Sets the byte at `offset` so that all bytes add up to zero.
void SetChecksum(std::span<std::uint8_t> bytes, std::size_t offset) {
    bytes[offset] = 0;
    bytes[offset] = static_cast<std::uint8_t>(-std::accumulate(bytes.begin(), bytes.end(), 0));
}

struct TableFacts {
    int structures = 0;
    std::size_t longest = 0;
};

// Measures the whole structures, up to the end of the table or the first bytes that are not one.
TableFacts MeasureTable(std::span<const std::uint8_t> table) {
    TableFacts facts;
    while (table.size() >= 4 && table[1] >= 4) {
        std::size_t end = table[1];
        while (end + 1 < table.size() && (table[end] != 0 || table[end + 1] != 0)) ++end;
        if (end + 1 >= table.size()) break;
        facts.structures += 1;
        facts.longest = std::max(facts.longest, end + 2);
        table = table.subspan(end + 2);
    }
    return facts;
}

std::uint32_t TableAddress(std::uint32_t entry, std::size_t entryArea, std::size_t length) {
    const std::uint32_t afterEntry = entry + static_cast<std::uint32_t>(entryArea);
    if (entry >= kSegment && afterEntry <= kSegmentEnd && length <= kSegmentEnd - afterEntry)
        return afterEntry;
    return length <= kSegment - kLowerSegment ? kLowerSegment : kSegmentEnd;
}

std::uint16_t EntryPointWord(int stated, std::size_t counted, const char* what) {
    const std::size_t value = stated >= 0 ? static_cast<std::size_t>(stated) : counted;
    if (value > std::numeric_limits<std::uint16_t>::max())
        throw std::length_error(std::string(what) + " " + std::to_string(value) +
                                " does not fit the entry point's 16 bits");
    return static_cast<std::uint16_t>(value);
}

// The half that starts with _DMI_ (DSP0134 5.2.1, offset 0x10).
void FillDmiHalf(std::span<std::uint8_t> half, std::span<const std::uint8_t> table,
                 std::uint32_t address, const SmbiosPlacement& placement) {
    SetAnchor(half, "_DMI_");
    SetNumber(half, 6, 2, EntryPointWord(placement.length, table.size(), "table length"));
    SetNumber(half, 8, 4, address);
    SetNumber(half, 12, 2,
              EntryPointWord(placement.structures,
                             static_cast<std::size_t>(MeasureTable(table).structures),
                             "structure count"));
    half[14] = static_cast<std::uint8_t>((placement.major << 4) | (placement.minor & 0x0F));
    SetChecksum(half, 5);
}

// _SM3_ (DSP0134, 5.2.2) and _DMI_ hold the same facts at other offsets.
SmbiosPlacement PlacementOfSm3(std::span<const std::uint8_t> dump) {
    SmbiosPlacement placement;
    placement.major = dump[7];
    placement.minor = dump[8];
    return placement;
}

SmbiosPlacement PlacementOfDmi(std::span<const std::uint8_t> dump, SmbiosPlacement::Anchor anchor) {
    SmbiosPlacement placement;
    placement.anchor = anchor;
    placement.major = dump[14] >> 4;
    placement.minor = dump[14] & 0x0F;
    placement.structures = static_cast<int>(ReadNumber(dump, 12, 2));
    return placement;
}

// The dump's table, as long as the entry point says but not past the end of the dump.
std::span<const std::uint8_t> TableOf(std::span<const std::uint8_t> dump, std::uint32_t offset,
                                      std::size_t length) {
    if (offset >= dump.size())
        throw std::runtime_error("the dump's table offset lies past its end");
    const auto rest = dump.subspan(offset);
    return rest.first(std::min(length, rest.size()));
}

}  // namespace

void PhysicalMemory::PlaceSmbios(std::span<const std::uint8_t> table,
                                 const SmbiosPlacement& placement) {
    const bool dmi = placement.anchor == SmbiosPlacement::Anchor::kDmi;
    Entry entry{};
    const std::size_t area = dmi ? kDmiOffset : 2 * kDmiOffset;
    const std::uint32_t address =
        placement.table != 0 ? placement.table : TableAddress(placement.entry, area, table.size());
    const std::span<std::uint8_t> half = std::span(entry).subspan(kDmiOffset, kDmiSize);
    FillDmiHalf(half, table, address, placement);
    SetAnchor(entry, "_SM_");
    entry[5] = kEntryPointSize;
    entry[6] = placement.major;
    entry[7] = placement.minor;
    SetNumber(
        entry, 8, 2,
        static_cast<std::uint32_t>(std::min<std::size_t>(MeasureTable(table).longest, 0xFFFF)));
    SetChecksum(entry, 4);

    Write(address, table);
    Write(placement.entry, dmi ? half : std::span<const std::uint8_t>(entry));
}

void PhysicalMemory::PlaceDump(std::span<const std::uint8_t> dump, SmbiosPlacement::Anchor anchor) {
    if (anchor == SmbiosPlacement::Anchor::kDmi && !HasAnchor(dump, "_DMI_"))
        throw std::runtime_error("the dump does not start with a _DMI_ entry point");
    if (HasAnchor(dump, "_SM3_") && dump.size() >= kSm3Size) {
        PlaceSmbios(TableOf(dump, ReadNumber(dump, 0x10, 4), ReadNumber(dump, 0x0C, 4)),
                    PlacementOfSm3(dump));
    } else if (HasAnchor(dump, "_DMI_") && dump.size() >= kDmiSize) {
        PlaceSmbios(TableOf(dump, ReadNumber(dump, 8, 4), ReadNumber(dump, 6, 2)),
                    PlacementOfDmi(dump, anchor));
    } else if (HasAnchor(dump, "_SM_") && dump.size() >= kEntryPointSize) {
        // The machine's own entry point is kept; only the address of the table changes.
        Entry entry;
        std::copy_n(dump.begin(), kEntryPointSize, entry.begin());
        const auto table = TableOf(dump, ReadNumber(dump, 0x18, 4), ReadNumber(dump, 0x16, 2));
        const std::uint32_t place = SmbiosPlacement().entry;
        const std::uint32_t address = TableAddress(place, 2 * kDmiOffset, table.size());
        SetNumber(entry, 0x18, 4, address);
        SetChecksum(std::span(entry).subspan(kDmiOffset, kDmiSize), 5);
        SetChecksum(
            std::span(entry).first(std::clamp<std::size_t>(entry[5], kDmiOffset, kEntryPointSize)),
            4);
        Write(address, table);
        Write(place, entry);
    } else {
        throw std::runtime_error(
            "not an SMBIOS dump: it does not start with a whole _SM_, _SM3_ or "
            "_DMI_ entry point");
    }
}

void PhysicalMemory::PlaceSegment(std::span<const std::uint8_t> image) {
    if (image.size() != kSegmentEnd - kSegment)
        throw std::runtime_error("a segment image has 65536 bytes, this one has " +
                                 std::to_string(image.size()));
    Write(kSegment, image);
}

}  // namespace sim
