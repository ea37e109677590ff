// SPDX-License-Identifier: MIT
//
// Reads /dev/mem as the library does: the entry point in the BIOS segment, and the table with one
// read that is as long as its own address and 64 KiB. So the table is there if the library has it.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "base/Bytes.h"
#include "tools/base/Descriptor.h"
#include "tools/capture/MachineCapture.h"

namespace tool {
namespace {

constexpr std::uint32_t kBiosSegment = 0xF0000;
constexpr std::size_t kSearchedSize = 0xFFF0;
constexpr std::size_t kAnchorStep = 16;
constexpr std::uint32_t kReadBlock = 0x10000;
constexpr std::uint64_t kAddressEnd = std::uint64_t{1} << 32;
constexpr std::uint32_t kFirstSignedOffset = 0x80000000;
constexpr std::uint32_t kLeastMemory = 0x100000;  // with the BIOS segment

// Where both kinds of entry points have the table's length and address (SMBIOS 2.3.4, 2.1.1).
struct EntryLayout {
    std::string_view anchor;
    std::size_t size;
    std::size_t lengthAt;
    std::size_t addressAt;
};
constexpr EntryLayout kSmLayout{"_SM_", 31, 22, 24};
constexpr EntryLayout kDmiLayout{"_DMI", 15, 6, 8};

class MemoryFile {
public:
    MemoryFile() : descriptor_("/dev/mem", O_RDONLY) {}

    bool IsOpen() const { return descriptor_.IsOpen(); }

    // The number of bytes; below 1 when nothing could be read.
    long ReadAt(std::uint32_t address, std::uint8_t* out, std::size_t size) const {
        if (lseek(descriptor_.Get(), static_cast<off_t>(address), SEEK_SET) == -1) return -1;
        return read(descriptor_.Get(), out, size);
    }

private:
    Descriptor descriptor_;
};

std::optional<std::size_t> PlaceOf(std::string_view anchor, const CapturedBytes& segment) {
    for (std::size_t at = 0; at < segment.size(); at += kAnchorStep)
        if (std::memcmp(&segment[at], anchor.data(), anchor.size()) == 0) return at;
    return std::nullopt;
}

// Nothing when it cannot be read.
std::optional<CapturedBytes> TableAt(const MemoryFile& memory, std::uint32_t address,
                                     std::size_t length) {
    const std::uint32_t base = address & ~(kReadBlock - 1);
    const std::uint64_t size = std::uint64_t{base} + kReadBlock;
    if (base + size > kAddressEnd) return std::nullopt;
    const std::unique_ptr<std::uint8_t[]> copy(new (std::nothrow)
                                                   std::uint8_t[static_cast<std::size_t>(size)]);
    if (copy == nullptr) return std::nullopt;
    const long got = memory.ReadAt(base, copy.get(), static_cast<std::size_t>(size));
    if (got <= 0) return std::nullopt;
    const std::size_t there = static_cast<std::size_t>(got);
    const std::size_t offset = address - base;
    CapturedBytes table(length);
    if (offset < there) std::copy_n(&copy[offset], std::min(length, there - offset), table.begin());
    return table;
}

// A memory of this size makes the reads fail that failed here.
std::uint64_t SizeWithoutTable(const MemoryFile& memory, std::uint32_t address) {
    if (address >= kFirstSignedOffset) return 0;
    std::uint8_t first = 0;
    const std::uint64_t isFirstThere = memory.ReadAt(address, &first, 1) == 1 ? 1 : 0;
    return std::max<std::uint64_t>(address + isFirstThere, kLeastMemory);
}

}  // namespace

void CaptureSmbios(MachineCapture& capture) {
    const MemoryFile memory;
    if (!memory.IsOpen()) {
        capture.unopened.push_back({"/dev/mem", errno});
        capture.notRead.push_back(&kPhysicalMemory);
        return;
    }
    CapturedBytes segment(kSearchedSize);
    if (memory.ReadAt(kBiosSegment, segment.data(), segment.size()) < 0) {
        capture.memorySize = kBiosSegment;
        capture.notRead.push_back(&kPhysicalMemory);
        return;
    }
    auto at = PlaceOf(kSmLayout.anchor, segment);
    const bool isDmi = !at;
    const EntryLayout& layout = isDmi ? kDmiLayout : kSmLayout;
    if (isDmi) at = PlaceOf(layout.anchor, segment);
    if (!at) {
        capture.notRead.push_back(&kPhysicalMemory);
        return;
    }
    SmbiosCapture& smbios = capture.smbios.emplace();
    smbios.isDmi = isDmi;
    smbios.at = kBiosSegment + static_cast<std::uint32_t>(*at);
    // Bytes after those that are searched count as zero.
    segment.resize(segment.size() + layout.size);
    const auto start = segment.begin() + static_cast<std::ptrdiff_t>(*at);
    smbios.entry.assign(start, start + static_cast<std::ptrdiff_t>(layout.size));
    const talvane::ByteView entry(smbios.entry);
    const std::uint32_t address = talvane::Le32(entry, layout.addressAt);
    auto table = TableAt(memory, address, talvane::Le16(entry, layout.lengthAt));
    smbios.isTableRead = table.has_value();
    if (table) {
        smbios.table = std::move(*table);
        return;
    }
    capture.memorySize = SizeWithoutTable(memory, address);
    capture.notRead.push_back(&kPhysicalMemory);
}

}  // namespace tool
