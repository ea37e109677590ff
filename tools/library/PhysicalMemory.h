// SPDX-License-Identifier: MIT
//
// Physical memory as the library reads it: the BIOS segment, and the entry point of the SMBIOS
// table in it (SMBIOS 2.3.4, 2.1.1).
#ifndef TALVANE_TOOLS_LIBRARY_PHYSICALMEMORY_H
#define TALVANE_TOOLS_LIBRARY_PHYSICALMEMORY_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "tools/base/Descriptor.h"

namespace tool {

inline constexpr std::uint32_t kBiosSegment = 0xF0000;
inline constexpr std::size_t kSearchedSize = 0xFFF0;  // of the segment, for entry points

// The library reads a table from the block that it begins in on, with one read that is as long as
// the block's address and a block.
inline constexpr std::uint32_t kTableBlock = 0x10000;

// File offsets are signed and have 32 bits: memory from here on cannot be read.
inline constexpr std::uint32_t kFirstUnreachable = 0x80000000;

class PhysicalMemory {
public:
    // Where it is not open afterwards, errno has the reason.
    PhysicalMemory();

    bool IsOpen() const { return descriptor_.IsOpen(); }

    // The number of bytes read; -1 with errno set when the device refuses.
    long ReadAt(std::uint32_t address, unsigned char* out, std::size_t size) const;

private:
    Descriptor descriptor_;
};

struct EntryPointLayout {
    std::string_view anchor;
    std::size_t size;
    std::size_t lengthAt;   // of the table's length, in two bytes
    std::size_t addressAt;  // of the table's address, in four bytes
};

struct EntryPoint {
    std::size_t at;  // its place in the bytes that were searched
    bool isDmi;      // there is a _DMI_ one alone
    EntryPointLayout layout;
};

// The first _SM_ entry point in the start of the BIOS segment; without one, the first _DMI_ one.
std::optional<EntryPoint> FindEntryPoint(std::span<const unsigned char> segment);

}  // namespace tool

#endif
