// SPDX-License-Identifier: MIT
//
// The walk over the disks and the primary partitions of each.

#include "storage/GetAllPartitionInfo.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "base/CodeName.h"
#include "storage/DriveAccess.h"
#include "storage/DriveSlot.h"
#include "storage/GetStorageInfo.h"
#include "storage/PartitionEntry.h"

using namespace talvane;

namespace {

constexpr int kPrimaryPartitions = 4;

// Kept: of the extended types only this one is walked.
constexpr unsigned char kExtendedLba = 0x0F;

constexpr CodeName kPrimaryTypes[] = {
    {0x07, "HPFS/NTFS"},
    {0x0B, "Win95 FAT32"},
    {0x82, "Linux swap"},
    {0x83, "Linux"},
};
static_assert(StrictlyAscending(kPrimaryTypes));

// The slot that the drive's `ControllerNo` names, or null when the text names none.
const DriveSlot* SlotOf(const DriveInfo& drive) {
    const auto slot =
        std::find_if(std::begin(kDriveSlots), std::end(kDriveSlots), [&](const DriveSlot& row) {
            return std::strcmp(drive.ControllerNo, row.controllerNo) == 0;
        });
    return slot != std::end(kDriveSlots) ? slot : nullptr;
}

void ListPartitions(int descriptor, char* device, PartitionInformation& info, int& count) {
    part_info scratch[kMaxPartitions] = {};
    for (int i = 0; i < kPrimaryPartitions; ++i) {
        SeekTo(descriptor, kPartitionTable + i * static_cast<long>(sizeof(partition)));
        const partition entry = ReadEntry(descriptor);
        if (entry.sys_ind == kExtendedLba) {
            // result not used: `count` already says how many entries are filled
            (void)get_logic_info_from_ext(descriptor, entry, scratch, &info, &count, device);
            continue;
        }
        const char* name = NameOf(kPrimaryTypes, entry.sys_ind, nullptr);
        if (name != nullptr && AddEntry(info, count, name, device, i + 1))
            WriteSize(info.partition[count - 1], SectorsOf(entry));
    }
    SeekTo(descriptor, 0);
}

}  // namespace

void GetAllPartitionInfo(PartitionInformation* info) {
    StorageInformation drives = {};
    GetStorageInfo(&drives);
    int count = 0;
    constexpr int kMaxDrives = sizeof drives.driveArray / sizeof drives.driveArray[0];
    for (int d = 0; d < std::min(drives.quantityIDE, kMaxDrives); ++d) {
        const DriveSlot* slot = SlotOf(drives.driveArray[d]);
        if (slot == nullptr) continue;
        char device[16];
        (void)std::snprintf(device, sizeof device, "/dev/%s", slot->device);
        const ReadOnlyFile drive(device);
        if (drive.IsOpen()) ListPartitions(drive.Descriptor(), device, *info, count);
    }
    info->quantity = count;
}
