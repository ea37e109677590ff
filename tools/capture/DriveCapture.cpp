// SPDX-License-Identifier: MIT
//
// Reads what the library reads of IDE drives: three files of each, the identity block of disks, and
// their partition tables.

#include <fcntl.h>
#include <linux/hdreg.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "tools/base/Descriptor.h"
#include "tools/base/Folder.h"
#include "tools/capture/MachineCapture.h"
#include "tools/capture/PartitionTables.h"

namespace tool {
namespace {

constexpr std::size_t kIdentityBytes = 512;
constexpr std::size_t kSectorBytes = 512;
constexpr const char* kDriveFiles[] = {"media", "model", "capacity"};

// The start of a file; nothing when it cannot be opened. The library looks at 64 bytes.
std::optional<std::string> StartOfFile(const std::string& path) {
    const Descriptor file(path.c_str(), O_RDONLY);
    if (!file.IsOpen()) return std::nullopt;
    char text[256];
    const ssize_t got = read(file.Get(), text, sizeof text);
    return std::string(text, got > 0 ? static_cast<std::size_t>(got) : 0);
}

bool IsDisk(const DriveCapture& drive) {
    const auto media = drive.files.find("media");
    if (media == drive.files.end()) return false;
    const std::string& text = media->second;
    return text == "disk" || text == "disk\n";
}

void ReadDisk(const std::string& path, DriveCapture& drive, MachineCapture& capture) {
    const Descriptor disk(path.c_str(), O_RDONLY);
    if (!disk.IsOpen()) {
        capture.unopened.push_back({path, errno});
        capture.notRead.push_back(&kDisks);
        return;
    }
    drive.isOpened = true;
    CapturedBytes identity(kIdentityBytes);
    if (ioctl(disk.Get(), HDIO_GET_IDENTITY, identity.data()) == 0) drive.identity = identity;
    drive.sectors = PartitionTables([&](std::uint64_t sector) {
        CapturedBytes bytes(kSectorBytes);
        // Result not used: what cannot be read is zero.
        (void)pread64(disk.Get(), bytes.data(), bytes.size(),
                      static_cast<off64_t>(sector * kSectorBytes));
        return bytes;
    });
    if (const auto capacity = drive.files.find("capacity"); capacity != drive.files.end())
        drive.sectorCount = std::strtoull(capacity->second.c_str(), nullptr, 0);
    if (!drive.sectors.empty())
        drive.sectorCount = std::max(drive.sectorCount, drive.sectors.rbegin()->first + 1);
    constexpr std::uint64_t kMaxSectors = 0xFFFFFFFF;  // of a disk in a machine file
    drive.sectorCount = std::min(drive.sectorCount, kMaxSectors);
}

}  // namespace

void CaptureDrives(MachineCapture& capture) {
    capture.hasIdeFolder = CanBeListed("/proc/ide");
    if (!capture.hasIdeFolder) {
        capture.unopened.push_back({"/proc/ide", errno});
        capture.notRead.push_back(&kIdeDrives);
        return;
    }
    for (char letter = 'a'; letter <= 'd'; ++letter) {
        const std::string name = std::string("hd") + letter;
        const std::string channel = "/proc/ide/ide" + std::to_string((letter - 'a') / 2);
        const std::string folder = channel + '/' + name;
        if (!CanBeListed(channel) || !CanBeListed(folder)) continue;
        DriveCapture drive{letter, {}, false, {}, 0, {}};
        for (const char* const file : kDriveFiles)
            if (const auto text = StartOfFile(folder + '/' + file)) drive.files[file] = *text;
        if (IsDisk(drive)) ReadDisk("/dev/" + name, drive, capture);
        if (!drive.files.empty()) capture.drives.push_back(drive);
    }
}

}  // namespace tool
