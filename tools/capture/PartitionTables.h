// SPDX-License-Identifier: MIT
//
// The partition tables of a disk, and nothing else of it.
#ifndef TALVANE_TOOLS_CAPTURE_PARTITIONTABLES_H
#define TALVANE_TOOLS_CAPTURE_PARTITIONTABLES_H

#include <functional>
#include <map>

#include "tools/capture/MachineCapture.h"

namespace tool {

// The 512 bytes of a sector; zeros for what cannot be read.
using ReadSector = std::function<CapturedBytes(std::uint64_t sector)>;

// The sectors in which the library looks for partition tables: the first one, and those along the
// extended partitions, which it takes to lie on cylinders of 255 heads and 63 sectors. Of a sector
// that is marked as a boot record, only the table is kept, without the code before it. Where
// another sector lies in such a place, that is some file's content: of it only those bytes are kept
// from which the library makes types and sizes of partitions, and only of types that it lists.
// Sectors of which nothing is left are left out. At most so many sectors are kept.
inline constexpr std::size_t kMaxKeptSectors = 1000;
std::map<std::uint64_t, CapturedBytes> PartitionTables(const ReadSector& read);

}  // namespace tool

#endif
