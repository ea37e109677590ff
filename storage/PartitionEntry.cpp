// SPDX-License-Identifier: MIT

#include "storage/PartitionEntry.h"

#include <cstdio>
#include <cstring>

#include "base/Bytes.h"
#include "storage/DriveAccess.h"
#include "storage/lltostr.h"

using namespace talvane;

void valueofarray(unsigned char* bytes, unsigned long long* out) {
    *out = Le32(ByteView(bytes, 4), 0);
}

partition ReadEntry(int descriptor) {
    partition entry;
    (void)ReadBytes(descriptor, &entry, sizeof entry);  // result not used: zero is an empty entry
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
    if (count >= kMostPartitions) return false;
    PARTITION& entry = info.partition[count];
    std::strcpy(entry.FileSystem, fileSystem);
    (void)std::snprintf(entry.description, sizeof entry.description, "%s%d", device, number);
    ++count;
    return true;
}
