// SPDX-License-Identifier: MIT
//
// Reading the disks, and which device file belongs to which position.

#include "tools/library/IdeDrives.h"

#include "Talvane.h"
#include "tools/base/Folder.h"
#include "tools/base/Text.h"
#include "tools/library/ChildProcess.h"

namespace tool {
namespace {

struct Position {
    const char* name;
    const char* device;
};

constexpr Position kPositions[] = {
    {"Primary Master", "/dev/hda"},
    {"Primary Slave", "/dev/hdb"},
    {"Secondry Master", "/dev/hdc"},
    {"Secondry Slave", "/dev/hdd"},
};

}  // namespace

std::optional<Drives> ReadDrives() {
    // Without the folder nobody knows which drives there are: newer kernels do not have it.
    if (!CanBeListed("/proc/ide")) return std::nullopt;
    // In a child process: without IDE the library writes a remark to standard output.
    const auto answer = FillInChildProcess<StorageInformation>(
        [](StorageInformation& record) { (void)GetInfo(TALVANE_DRIVES, &record); });
    if (!answer) return std::nullopt;
    Drives drives;
    for (int i = 0; i < answer->record.quantityIDE; ++i) {
        const DriveInfo& drive = answer->record.driveArray[i];
        drives.push_back({.controller = FieldText(drive.ControllerType),
                          .position = FieldText(drive.ControllerNo),
                          .model = FieldText(drive.model),
                          .size = FieldText(drive.size),
                          .serialNumber = FieldText(drive.SerialNo)});
    }
    return drives;
}

std::string DevicePath(const Drive& drive) {
    for (const Position& position : kPositions)
        if (drive.position == position.name) return position.device;
    return "";
}

}  // namespace tool
