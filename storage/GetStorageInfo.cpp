// SPDX-License-Identifier: MIT

#include "storage/GetStorageInfo.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "storage/DriveAccess.h"
#include "storage/DriveSlot.h"
#include "storage/lltostr.h"

namespace {

constexpr std::size_t kFieldSize = 64;
constexpr std::size_t kPathSize = 64;

constexpr std::size_t kSerialNumber = 20;  // of the identity block (struct hd_driveid)

using Field = char[kFieldSize];
using Path = char[kPathSize];

// A field takes what it has room for; `text` ends in a zero byte.
void SetText(Field& field, const char* text) {
    const std::size_t length = std::min(std::strlen(text), kFieldSize - 1);
    std::memcpy(field, text, length);
    field[length] = '\0';
}

// Reads at most 64 bytes of a file in the drive's folder; of these, one line feed at the end does
// not count. Returns false, with the field as it was, when there is nothing to read.
bool ReadField(const Path& folder, const char* name, Field& field) {
    Path path;
    (void)std::snprintf(path, sizeof path, "%s%s", folder, name);
    const ReadOnlyFile file(path);
    char text[kFieldSize + 1] = {};
    if (!file.IsOpen() || ReadBytes(file.Descriptor(), text, kFieldSize) == 0) return false;
    stripret(text);
    SetText(field, text);
    return true;
}

// From a count of sectors, in any base that its prefix tells, to a count of bytes.
void SectorsToBytes(Field& size) {
    const long long sectors = std::strtoll(size, nullptr, 0);
    lltostr(size, static_cast<unsigned long long>(sectors) * kSectorSize);
}

// Kept: the serial number is not terminated in the identity block, so the text runs on into the
// fields behind it up to the first zero byte.
void ReadSerialNumber(const DriveSlot& slot, Field& field) {
    Path path;
    (void)std::snprintf(path, sizeof path, "/dev/%s", slot.device);
    const ReadOnlyFile drive(path);
    unsigned char identity[kIdentitySize];
    if (!drive.IsOpen() || !ReadIdentity(drive.Descriptor(), identity)) return;
    char text[kIdentitySize - kSerialNumber + 1] = {};
    std::memcpy(text, identity + kSerialNumber, kIdentitySize - kSerialNumber);
    SetText(field, text);
}

// Whether there is a disk in the slot; its entry is filled then.
bool DescribeDisk(const DriveSlot& slot, DriveInfo& disk) {
    Path folder;
    int length = std::snprintf(folder, sizeof folder, "/proc/ide/ide%d/", slot.channel);
    if (!DirectoryCanBeOpened(folder)) return false;
    const std::size_t used = static_cast<std::size_t>(length);
    (void)std::snprintf(folder + used, sizeof folder - used, "%s/", slot.device);
    if (!DirectoryCanBeOpened(folder)) return false;

    std::memset(disk.type, 0, sizeof disk.type);
    if (!ReadField(folder, "media", disk.type) || std::strcmp(disk.type, "disk") != 0) return false;

    SetText(disk.type, "hdd");
    (void)ReadField(folder, "model", disk.model);  // result not used: the field stays then
    if (ReadField(folder, "capacity", disk.size)) SectorsToBytes(disk.size);
    SetText(disk.ControllerType, "ide");
    SetText(disk.ControllerNo, slot.controllerNo);
    ReadSerialNumber(slot, disk.SerialNo);
    return true;
}

}  // namespace

void GetStorageInfo(StorageInformation* info) {
    int disks = 0;
    if (DirectoryCanBeOpened("/proc/ide")) {
        for (const DriveSlot& slot : kDriveSlots)
            if (DescribeDisk(slot, info->driveArray[disks])) ++disks;
    } else {
        (void)std::printf("No ide devices.");
    }
    info->quantityIDE = disks;
}
