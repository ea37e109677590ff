// SPDX-License-Identifier: MIT

#include "tools/records/Drives.h"

#include <dirent.h>

#include <cerrno>

#include "Talvane.h"
#include "tools/Apart.h"
#include "tools/ByteSize.h"
#include "tools/Layout.h"
#include "tools/Text.h"

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

// Also where there is no such folder: a machine without IDE.
bool IdeFolderCanBeRead() {
    DIR* const folder = opendir("/proc/ide");
    if (folder == nullptr) return errno == ENOENT;
    (void)closedir(folder);  // result not used: nothing was read
    return true;
}

}  // namespace

std::optional<Drives> ReadDrives() {
    if (!IdeFolderCanBeRead()) return std::nullopt;
    // Apart: without IDE the library says so on standard output.
    const auto answer = RunApart<StorageInformation>(
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

std::string SerialText(const Drive& drive) {
    constexpr std::size_t kSerialSize = 20;
    return drive.serialNumber.substr(0, kSerialSize);
}

std::string DevicePath(const Drive& drive) {
    for (const Position& position : kPositions)
        if (drive.position == position.name) return position.device;
    return "";
}

std::string ToText(const Drives& drives) {
    std::vector<Row> rows;
    for (const Drive& drive : drives)
        rows.push_back({DevicePath(drive), drive.controller, drive.position, drive.model,
                        SizeText(drive.size), SerialText(drive)});
    return Section("Drives", {TableBlock({{"Device"},
                                          {"Controller"},
                                          {"Position"},
                                          {"Model"},
                                          {"Size", Column::Align::kRight},
                                          {"Serial number"}},
                                         rows)});
}

Json ToJson(const Drives& drives) {
    Json list = Json::array();
    for (const Drive& drive : drives)
        list.push_back({{"device", DevicePath(drive)},
                        {"controller", Utf8(drive.controller)},
                        {"position", Utf8(drive.position)},
                        {"model", Utf8(drive.model)},
                        {"size", SizeJson(drive.size)},
                        {"serialNumber", Utf8(SerialText(drive))},
                        {"serialNumberRead", Utf8(drive.serialNumber)}});
    return list;
}

}  // namespace tool
