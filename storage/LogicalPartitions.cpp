// SPDX-License-Identifier: MIT
//
// The walk along the chain of extended boot records. Each record holds two entries: its logical
// partition, and a link whose type says whether another record follows.

#include "base/CodeName.h"
#include "storage/DriveAccess.h"
#include "storage/PartitionEntry.h"

using namespace talvane;

namespace {

constexpr CodeName kLogicalTypes[] = {
    {0x06, "FAT 16"},
    {0x0B, "Win95 FAT32"},
    {0x0C, "Win95 FAT32 (LBA)"},
    {0x0E, "Win95 FAT16 (LBA)"},
    {0x16, "Hidden FAT16"},
    {0x17, "Hidden HPFS/NTFS"},
    {0x82, "Linux swap"},
    {0x83, "Linux"},
};
static_assert(StrictlyAscending(kLogicalTypes));

constexpr unsigned long kSectorsPerCylinder = 255 * 63;
constexpr unsigned long kBytesPerCylinder = kSectorsPerCylinder * kSectorSize;
constexpr unsigned long long kMaxCylinderSteps = 1ULL << 25;

constexpr int kFirstLogicalNumber = 5;

// Origins of _llseek: SEEK_SET and SEEK_CUR of the system header.
constexpr unsigned kFromStart = 0;
constexpr unsigned kFromHere = 1;

// Moves to the partition table of the record on a cylinder, one step per cylinder, so every offset
// fits 32 bits. The results are not used: a refused move shows in what is read next.
void SeekToTableOn(int descriptor, unsigned long long cylinder) {
    const unsigned fd = static_cast<unsigned>(descriptor);
    long long position = 0;
    (void)_llseek(fd, 0, 0, &position, kFromStart);
    for (; cylinder != 0; --cylinder) (void)_llseek(fd, 0, kBytesPerCylinder, &position, kFromHere);
    (void)_llseek(fd, 0, kPartitionTable, &position, kFromHere);
}

}  // namespace

int get_logic_info_from_ext(int fd, partition ext, part_info* scratch, PartitionInformation* info,
                            int* count, char* device) {
    if (ext.sys_ind == 0) return 0;
    unsigned long long firstSector = 0;
    valueofarray(ext.start4, &firstSector);
    unsigned long long cylinder = firstSector / kSectorsPerCylinder;
    unsigned long long stepsLeft = kMaxCylinderSteps;
    int visited = 0;
    while (cylinder <= stepsLeft) {
        stepsLeft -= cylinder;
        SeekToTableOn(fd, cylinder);
        const partition entry = ReadEntry(fd);
        const unsigned long long sectors = SectorsOf(entry);
        if (visited < kMaxPartitions) {
            scratch[visited].filesys = entry.sys_ind;
            scratch[visited].size = sectors * kSectorSize;
        }
        const int number = kFirstLogicalNumber + visited++;
        const char* name = NameOf(kLogicalTypes, entry.sys_ind, nullptr);
        if (name != nullptr && !AddEntry(*info, *count, name, device, number)) break;
        // Kept: after an unlisted type this overwrites the size of the entry filled before, even
        // one of a primary partition or of another disk.
        if (*count > 0) WriteSize(info->partition[*count - 1], sectors);
        cylinder += sectors / kSectorsPerCylinder + 1;
        if (ReadEntry(fd).sys_ind == 0) break;
    }
    return visited;
}
