// SPDX-License-Identifier: MIT
//
// The chain of extended boot records. Each holds two entries: its logical partition, and a link
// whose type tells whether another record follows.

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
constexpr unsigned long long kMostSteps = 1ULL << 25;

constexpr int kFirstLogical = 5;
constexpr unsigned kFromStart = 0;  // SEEK_SET
constexpr unsigned kFromHere = 1;   // SEEK_CUR

// One step per cylinder: no offset that does not fit 32 bits is ever needed.
void SeekToTableOf(int descriptor, unsigned long long cylinder) {
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
    unsigned long long stepsLeft = kMostSteps;
    int visited = 0;
    while (cylinder <= stepsLeft) {
        stepsLeft -= cylinder;
        SeekToTableOf(fd, cylinder);
        const partition entry = ReadEntry(fd);
        const unsigned long long sectors = SectorsOf(entry);
        if (visited < kMostPartitions) {
            scratch[visited].filesys = entry.sys_ind;
            scratch[visited].size = sectors * kSectorSize;
        }
        const int number = kFirstLogical + visited++;
        const char* name = NameOf(kLogicalTypes, entry.sys_ind, nullptr);
        if (name != nullptr && !AddEntry(*info, *count, name, device, number)) break;
        // Kept: after an unlisted type this is the entry of the partition before, a primary one or
        // that of another disk included.
        if (*count > 0) WriteSize(info->partition[*count - 1], sectors);
        cylinder += sectors / kSectorsPerCylinder + 1;
        if (ReadEntry(fd).sys_ind == 0) break;
    }
    return visited;
}
