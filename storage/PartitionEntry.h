// SPDX-License-Identifier: MIT
//
// What the walks over primary and logical partitions share: reading a table entry and writing an
// entry of the record.
#ifndef TALVANE_STORAGE_PARTITIONENTRY_H
#define TALVANE_STORAGE_PARTITIONENTRY_H

#include "storage/GetAllPartitionInfo.h"

// Byte offset of the partition table in a boot record.
constexpr long kPartitionTable = 446;

constexpr int kMostPartitions =
    sizeof(PartitionInformation::partition) / sizeof(PartitionInformation::partition[0]);

// Reads on from the descriptor's position; what does not come is zero.
[[nodiscard]] partition ReadEntry(int descriptor);

[[nodiscard]] unsigned long long SectorsOf(partition entry);

// Writes the size of so many sectors in bytes.
void WriteSize(PARTITION& entry, unsigned long long sectors);

// Fills the next entry but for its size and counts it. Returns false when all are filled.
// REQUIRES: 0 <= *count.
[[nodiscard]] bool AddEntry(PartitionInformation& info, int& count, const char* fileSystem,
                            const char* device, int number);

#endif
