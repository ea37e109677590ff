// SPDX-License-Identifier: MIT
//
// Follows the chain of logical partitions as the library does.

#include "tools/capture/PartitionTables.h"

#include <algorithm>

#include "base/Bytes.h"

namespace tool {
namespace {

constexpr std::size_t kTableAt = 446;
constexpr std::size_t kEntrySize = 16;
constexpr std::size_t kEntries = 4;
constexpr std::size_t kTypeAt = 4;
constexpr std::size_t kStartAt = 8;
constexpr std::size_t kCountAt = 12;
constexpr std::size_t kMarkAt = 510;

constexpr std::uint8_t kExtended = 0x0F;  // the one extended type that the library follows
constexpr std::uint8_t kUnlisted = 0x05;  // stands for all other types
constexpr std::uint8_t kListedTypes[] = {0x06, 0x07, 0x0B, 0x0C, 0x0E, 0x16, 0x17, 0x82, 0x83};

constexpr std::uint64_t kCylinder = 255 * 63;                // in sectors
constexpr std::uint64_t kMaxSteps = std::uint64_t{1} << 25;  // from cylinder to cylinder

std::size_t EntryAt(std::size_t entry) {
    return kTableAt + entry * kEntrySize;
}

std::uint8_t TypeOf(const CapturedBytes& sector, std::size_t entry) {
    return sector[EntryAt(entry) + kTypeAt];
}

void CopyNumber(const CapturedBytes& from, std::size_t at, CapturedBytes& to) {
    std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(at), 4,
                to.begin() + static_cast<std::ptrdiff_t>(at));
}

bool IsListed(std::uint8_t type) {
    return std::find(std::begin(kListedTypes), std::end(kListedTypes), type) !=
           std::end(kListedTypes);
}

bool IsBootRecord(const CapturedBytes& sector) {
    return sector[kMarkAt] == 0x55 && sector[kMarkAt + 1] == 0xAA;
}

CapturedBytes TableOf(const CapturedBytes& sector) {
    CapturedBytes kept(sector.size());
    const auto table = static_cast<std::ptrdiff_t>(kTableAt);
    std::copy(sector.begin() + table, sector.end(), kept.begin() + table);
    return kept;
}

// Of the first sector.
CapturedBytes KeptOfFirst(const CapturedBytes& sector) {
    if (IsBootRecord(sector)) return TableOf(sector);
    CapturedBytes kept(sector.size());
    for (std::size_t entry = 0; entry < kEntries; ++entry) {
        const std::uint8_t type = TypeOf(sector, entry);
        if (type != kExtended && !IsListed(type)) continue;
        kept[EntryAt(entry) + kTypeAt] = type;
        CopyNumber(sector, EntryAt(entry) + (type == kExtended ? kStartAt : kCountAt), kept);
    }
    return kept;
}

// Of a sector along an extended partition. The size counts whatever the type is, and of the second
// entry only whether it has a type.
CapturedBytes KeptOfLink(const CapturedBytes& sector) {
    if (IsBootRecord(sector)) return TableOf(sector);
    CapturedBytes kept(sector.size());
    const std::uint8_t type = TypeOf(sector, 0);
    if (IsListed(type)) kept[EntryAt(0) + kTypeAt] = type;
    CopyNumber(sector, EntryAt(0) + kCountAt, kept);
    const std::uint8_t link = TypeOf(sector, 1);
    if (link != 0)
        kept[EntryAt(1) + kTypeAt] = IsListed(link) || link == kExtended ? link : kUnlisted;
    return kept;
}

class Tables {
public:
    explicit Tables(const ReadSector& read) : read_(read) {}

    std::map<std::uint64_t, CapturedBytes> Collect() {
        const CapturedBytes first = read_(0);
        Keep(0, KeptOfFirst(first));
        for (std::size_t entry = 0; entry < kEntries; ++entry)
            if (TypeOf(first, entry) == kExtended)
                Follow(talvane::Le32(talvane::ByteView(first), EntryAt(entry) + kStartAt));
        return std::move(kept_);
    }

private:
    void Keep(std::uint64_t sector, const CapturedBytes& bytes) {
        const bool isEmpty =
            std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; });
        if (isEmpty) return;
        const auto [known, isNew] = kept_.emplace(sector, bytes);
        // An extended partition can lie on the cylinder of the first sector.
        for (std::size_t i = 0; !isNew && i < bytes.size(); ++i) known->second[i] |= bytes[i];
    }

    void Follow(std::uint64_t firstSector) {
        std::uint64_t steps = kMaxSteps;
        for (std::uint64_t cylinder = firstSector / kCylinder;
             cylinder <= steps && kept_.size() < kMaxKeptSectors;) {
            steps -= cylinder;
            const CapturedBytes sector = read_(cylinder * kCylinder);
            Keep(cylinder * kCylinder, KeptOfLink(sector));
            const talvane::ByteView bytes(sector);
            cylinder += talvane::Le32(bytes, EntryAt(0) + kCountAt) / kCylinder + 1;
            if (TypeOf(sector, 1) == 0) return;
        }
    }

    const ReadSector& read_;
    std::map<std::uint64_t, CapturedBytes> kept_;
};

}  // namespace

std::map<std::uint64_t, CapturedBytes> PartitionTables(const ReadSector& read) {
    return Tables(read).Collect();
}

}  // namespace tool
