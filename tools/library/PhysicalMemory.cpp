// SPDX-License-Identifier: MIT
//
// Seeks and reads in /dev/mem, and looks for anchors.

#include "tools/library/PhysicalMemory.h"

#include <unistd.h>

#include <cstring>

namespace tool {
namespace {

constexpr std::size_t kParagraph = 16;  // entry points lie on its multiples

constexpr EntryPointLayout kSmbiosLayout{"_SM_", 31, 22, 24};
constexpr EntryPointLayout kDmiLayout{"_DMI", 15, 6, 8};

std::optional<std::size_t> FindAnchor(std::span<const unsigned char> segment,
                                      std::string_view anchor) {
    for (std::size_t at = 0; at + kParagraph <= segment.size(); at += kParagraph)
        if (std::memcmp(segment.data() + at, anchor.data(), anchor.size()) == 0) return at;
    return std::nullopt;
}

}  // namespace

PhysicalMemory::PhysicalMemory() : descriptor_("/dev/mem", O_RDONLY) {}

long PhysicalMemory::ReadAt(std::uint32_t address, unsigned char* out, std::size_t size) const {
    if (lseek(descriptor_.Get(), static_cast<off_t>(address), SEEK_SET) == -1) return -1;
    return read(descriptor_.Get(), out, size);
}

std::optional<EntryPoint> FindEntryPoint(std::span<const unsigned char> segment) {
    if (const auto smbios = FindAnchor(segment, kSmbiosLayout.anchor))
        return EntryPoint{*smbios, false, kSmbiosLayout};
    if (const auto dmi = FindAnchor(segment, kDmiLayout.anchor))
        return EntryPoint{*dmi, true, kDmiLayout};
    return std::nullopt;
}

}  // namespace tool
