// SPDX-License-Identifier: MIT
//
// Reads /dev/mem as the library does: the entry point in the BIOS segment, and the table with one
// read that is as long as its own address and 64 KiB. So the table is there if the library has it.

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>

#include "base/Bytes.h"
#include "tools/capture/MachineCapture.h"
#include "tools/library/PhysicalMemory.h"

namespace tool {
namespace {

constexpr std::uint64_t kAddressEnd = std::uint64_t{1} << 32;
constexpr std::uint64_t kMinMemory = 0x100000;  // with the BIOS segment

// Nothing when it cannot be read.
std::optional<CapturedBytes> TableAt(const PhysicalMemory& memory, std::uint32_t address,
                                     std::size_t length) {
    const std::uint32_t base = address & ~(kTableBlock - 1);
    const std::uint64_t size = std::uint64_t{base} + kTableBlock;
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
std::uint64_t SizeWithoutTable(const PhysicalMemory& memory, std::uint32_t address) {
    if (address >= kFirstUnreachable) return 0;
    std::uint8_t first = 0;
    const std::uint64_t isFirstThere = memory.ReadAt(address, &first, 1) == 1 ? 1 : 0;
    return std::max<std::uint64_t>(address + isFirstThere, kMinMemory);
}

}  // namespace

void CaptureSmbios(MachineCapture& capture) {
    const PhysicalMemory memory;
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
    const auto found = FindEntryPoint(segment);
    if (!found) {
        capture.notRead.push_back(&kPhysicalMemory);
        return;
    }
    SmbiosCapture& smbios = capture.smbios.emplace();
    smbios.isDmi = found->isDmi;
    smbios.at = kBiosSegment + static_cast<std::uint32_t>(found->at);
    // Bytes after those that are searched count as zero.
    segment.resize(segment.size() + found->layout.size);
    const auto start = segment.begin() + static_cast<std::ptrdiff_t>(found->at);
    smbios.entry.assign(start, start + static_cast<std::ptrdiff_t>(found->layout.size));
    const talvane::ByteView entry(smbios.entry);
    const std::uint32_t address = talvane::Le32(entry, found->layout.addressAt);
    auto table = TableAt(memory, address, talvane::Le16(entry, found->layout.lengthAt));
    smbios.isTableRead = table.has_value();
    if (table) {
        smbios.table = std::move(*table);
        return;
    }
    capture.memorySize = SizeWithoutTable(memory, address);
    capture.notRead.push_back(&kPhysicalMemory);
}

}  // namespace tool
