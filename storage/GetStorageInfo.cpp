// SPDX-License-Identifier: MIT
//
// The IDE disks: what /proc/ide says about each, and the serial number that the drive itself gives.

#include "storage/GetStorageInfo.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "storage/DriveAccess.h"
#include "storage/DriveSlot.h"
#include "storage/lltostr.h"

using namespace talvane;

namespace {

constexpr std::size_t kFieldSize = sizeof DriveInfo::type;
constexpr std::size_t kPathSize = 64;

// Offset in the identity block (struct hd_driveid).
constexpr std::size_t kIdentitySerialNumber = 20;

using Field = char[kFieldSize];
using Path = char[kPathSize];

// Cuts the text to the field, NUL-terminated.
void WriteField(Field& field, const char* text) {
    const std::size_t length = std::min(std::strlen(text), kFieldSize - 1);
    std::memcpy(field, text, length);
    field[length] = '\0';
}

// Reads at most 64 bytes of a file in the drive's folder into the field, without a line feed at the
// end. Returns false and leaves the field alone when there is nothing to read.
bool ReadField(const Path& folder, const char* name, Field& field) {
    Path path;
    (void)std::snprintf(path, sizeof path, "%s%s", folder, name);
    const ReadOnlyFile file(path);
    char text[kFieldSize + 1] = {};
    if (!file.IsOpen() || ReadBytes(file.Descriptor(), text, kFieldSize) == 0) return false;
    stripret(text);
    WriteField(field, text);
    return true;
}

// Replaces a count of sectors, in the base that its prefix says, by a count of bytes.
void SectorsToBytes(Field& size) {
    const long long sectors = std::strtoll(size, nullptr, 0);
    lltostr(size, static_cast<unsigned long long>(sectors) * kSectorSize);
}

// Kept: the serial number is not NUL-terminated in the identity block, so the text runs on into the
// fields that follow it, up to the first zero byte.
void ReadSerialNumber(const DriveSlot& slot, Field& field) {
    Path path;
    (void)std::snprintf(path, sizeof path, "/dev/%s", slot.device);
    const ReadOnlyFile drive(path);
    unsigned char identity[kIdentitySize];
    if (!drive.IsOpen() || !ReadIdentity(drive.Descriptor(), identity)) return;
    char text[kIdentitySize - kIdentitySerialNumber + 1] = {};
    std::memcpy(text, identity + kIdentitySerialNumber, kIdentitySize - kIdentitySerialNumber);
    WriteField(field, text);
}

// Returns whether there is a disk in the slot, and fills its entry then.
bool DescribeDisk(const DriveSlot& slot, DriveInfo& disk) {
    Path folder;
    int length = std::snprintf(folder, sizeof folder, "/proc/ide/ide%d/", slot.channel);
    if (!DirectoryCanBeOpened(folder)) return false;
    const std::size_t used = static_cast<std::size_t>(length);
    (void)std::snprintf(folder + used, sizeof folder - used, "%s/", slot.device);
    if (!DirectoryCanBeOpened(folder)) return false;

    std::memset(disk.type, 0, sizeof disk.type);
    if (!ReadField(folder, "media", disk.type) || std::strcmp(disk.type, "disk") != 0) return false;

    WriteField(disk.type, "hdd");
    // result not used: without the file the field stays as it was
    (void)ReadField(folder, "model", disk.model);
    if (ReadField(folder, "capacity", disk.size)) SectorsToBytes(disk.size);
    WriteField(disk.ControllerType, "ide");
    WriteField(disk.ControllerNo, slot.controllerNo);
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
