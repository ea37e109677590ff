// SPDX-License-Identifier: MIT
//
// What the walks over primary and logical partitions share: they read an entry of a partition table
// and write an entry of the record.
#ifndef TALVANE_STORAGE_PARTITIONENTRY_H
#define TALVANE_STORAGE_PARTITIONENTRY_H

#include "storage/GetAllPartitionInfo.h"

namespace talvane {

// Byte offset of the partition table in a boot record.
constexpr long kPartitionTable = 446;

constexpr int kMaxPartitions =
    sizeof(PartitionInformation::partition) / sizeof(PartitionInformation::partition[0]);

// Reads on from where the last access ended. Bytes that cannot be read are zero.
[[nodiscard]] partition ReadEntry(int descriptor);

// The number of sectors of the partition.
[[nodiscard]] unsigned long long SectorsOf(partition entry);

// Writes the size of that many sectors, in bytes.
void WriteSize(PARTITION& entry, unsigned long long sectors);

// Fills all but the size of the next entry, and counts it. Returns false when all entries are
// filled. REQUIRES: count >= 0.
[[nodiscard]] bool AddEntry(PartitionInformation& info, int& count, const char* fileSystem,
                            const char* device, int number);

}  // namespace talvane

#endif
