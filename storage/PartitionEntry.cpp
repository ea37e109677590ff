// SPDX-License-Identifier: MIT
//
// Entries of partition tables and of the partition record.

#include "storage/PartitionEntry.h"

#include <cstdio>
#include <cstring>

#include "base/Bytes.h"
#include "storage/DriveAccess.h"
#include "storage/lltostr.h"

void valueofarray(unsigned char* bytes, unsigned long long* out) {
    *out = talvane::Le32(talvane::ByteView(bytes, sizeof(partition::size4)), 0);
}

namespace talvane {

partition ReadEntry(int descriptor) {
    partition entry;
    (void)ReadBytes(descriptor, &entry, sizeof entry);  // result not used: zeros are an empty entry
    return entry;
}

unsigned long long SectorsOf(partition entry) {
    unsigned long long sectors = 0;
    valueofarray(entry.size4, &sectors);
    return sectors;
}

void WriteSize(PARTITION& entry, unsigned long long sectors) {
    lltostr(entry.size, sectors * kSectorSize);
}

bool AddEntry(PartitionInformation& info, int& count, const char* fileSystem, const char* device,
              int number) {
    if (count >= kMaxPartitions) return false;
    PARTITION& entry = info.partition[count];
    std::strcpy(entry.FileSystem, fileSystem);
    (void)std::snprintf(entry.description, sizeof entry.description, "%s%d", device, number);
    ++count;
    return true;
}

}  // namespace talvane
