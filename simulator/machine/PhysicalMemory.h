// SPDX-License-Identifier: MIT
//
// The physical memory of a simulated server, as /dev/mem shows it: zero but for what was written.
#ifndef TALVANE_SIMULATOR_MACHINE_PHYSICALMEMORY_H
#define TALVANE_SIMULATOR_MACHINE_PHYSICALMEMORY_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>

#include "simulator/base/Bytes.h"

namespace sim {

// Where a table goes and what its entry point says of it.
struct SmbiosPlacement {
    enum class Anchor { kSmbios, kDmi };
    Anchor anchor = Anchor::kSmbios;
    std::uint8_t major = 2;
    std::uint8_t minor = 3;
    std::uint32_t entry = 0xF0010;  // address of the entry point
    std::uint32_t table = 0;        // address of the table; 0: right behind the entry point when
                                    // it fits into the segment, else at 0xE0000 or 0x100000
    int structures = -1;            // count that the entry point states; -1: counted in the table
    int length = -1;                // table length that it states; -1: the table's own
};

class PhysicalMemory {
public:
    // Bytes of memory, at most 4 GiB; a read that goes past them is refused with EFAULT, as the
    // kernel does.
    void Resize(std::uint64_t size);

    // What lies past size() is kept, and readable once the memory is large enough. Past 4 GiB:
    // std::out_of_range.
    void Write(std::uint32_t address, std::span<const std::uint8_t> bytes);

    // Entry point with right checksums, and the table. std::length_error when the table is longer
    // than the entry point can state and no other length is given.
    void PlaceSmbios(std::span<const std::uint8_t> table, const SmbiosPlacement& placement = {});

    // What `dmidecode --dump-bin` wrote. A dump whose entry point is of another kind (_SM3_, _DMI_
    // alone) gets an _SM_ one. Throws std::runtime_error when it is no such dump.
    void PlaceDump(std::span<const std::uint8_t> dump);

    // 64 KiB as they lay at 0xF0000; std::runtime_error for any other size.
    void PlaceSegment(std::span<const std::uint8_t> image);

    std::uint64_t Size() const { return size_; }

    // Fills `out` with the bytes at `address`. Returns false when they are not all within size().
    bool Read(std::uint64_t address, std::span<std::uint8_t> out) const;

private:
    static constexpr std::size_t kPageSize = 4096;
    using Page = std::array<std::uint8_t, kPageSize>;

    std::uint64_t size_ = 64u << 20;
    std::map<std::uint32_t, Page> pages_;  // by page number; pages never written are not here
};

}  // namespace sim

#endif
