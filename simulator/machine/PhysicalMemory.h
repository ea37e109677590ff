// SPDX-License-Identifier: MIT
//
// The physical memory of a simulated server, as /dev/mem shows it: zero except where something was
// written.
#ifndef TALVANE_SIMULATOR_MACHINE_PHYSICALMEMORY_H
#define TALVANE_SIMULATOR_MACHINE_PHYSICALMEMORY_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>

#include "simulator/base/Bytes.h"

namespace sim {

// Where an SMBIOS table goes, and what its entry point says about it.
struct SmbiosPlacement {
    enum class Anchor { kSmbios, kDmi };
    Anchor anchor = Anchor::kSmbios;
    std::uint8_t major = 2;
    std::uint8_t minor = 3;
    std::uint32_t entry = 0xF0010;  // address of the entry point
    std::uint32_t table = 0;        // address of the table; 0: right after the entry point when
                                    // it fits into the segment, else at 0xE0000 or 0x100000
    int structures = -1;            // the stated number of structures; -1: counted in the table
    int length = -1;                // the stated length of the table; -1: its real length
};

class PhysicalMemory {
public:
    // Sets the number of bytes; std::out_of_range for more than 4 GiB.
    void Resize(std::uint64_t size);

    // Writes bytes. Those past Size() become readable when the memory grows. std::out_of_range for
    // bytes past 4 GiB.
    void Write(std::uint32_t address, std::span<const std::uint8_t> bytes);

    // Writes the table, and an entry point with valid checksums. std::length_error when the table
    // is longer than the entry point can state and the placement states no other length.
    void PlaceSmbios(std::span<const std::uint8_t> table, const SmbiosPlacement& placement = {});

    // Writes the table of a dump made by `dmidecode --dump-bin`. An entry point of another kind
    // (_SM3_, or _DMI_ alone) is replaced by an _SM_ one. With the anchor kDmi, the dump's _DMI_
    // one stays. std::runtime_error when the bytes are not such a dump.
    void PlaceDump(std::span<const std::uint8_t> dump,
                   SmbiosPlacement::Anchor anchor = SmbiosPlacement::Anchor::kSmbios);

    // Writes the 64 KiB at 0xF0000; std::runtime_error for any other size.
    void PlaceSegment(std::span<const std::uint8_t> image);

    std::uint64_t Size() const { return size_; }

    // Fills `out` with the bytes at `address`. Returns false, with `out` untouched, when they are
    // not all within Size().
    bool Read(std::uint64_t address, std::span<std::uint8_t> out) const;

private:
    static constexpr std::size_t kPageSize = 4096;
    using Page = std::array<std::uint8_t, kPageSize>;

    std::uint64_t size_ = 64u << 20;
    std::map<std::uint32_t, Page> pages_;  // by page number; only pages that were written to
};

}  // namespace sim

#endif
