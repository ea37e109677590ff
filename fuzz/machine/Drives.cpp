// SPDX-License-Identifier: MIT
//
// Extended records lie on the cylinders of a disk with 255 heads and 63 sectors per track.

#include "fuzz/machine/Drives.h"

namespace fuzz {
namespace {

constexpr std::uint64_t kTable = 446;
constexpr std::uint64_t kBytesPerCylinder = 255 * 63 * 512;
constexpr std::size_t kTableSize = 64;
constexpr std::size_t kExtendedEntries = 32;
constexpr std::size_t kMaxExtended = 64;

}  // namespace

void AddDrives(FedMachine& machine, Input& input) {
    for (const char* const drive : {"ide0/hda", "ide0/hdb", "ide1/hdc", "ide1/hdd"}) {
        constexpr std::size_t kChannelPart = 5;
        if ((input.TakeByte() & 1) == 0) continue;
        const std::string folder = std::string("/proc/ide/") + drive;
        for (const char* const file : {"/media", "/model", "/capacity"}) {
            const talvane::ByteView text = input.TakeUntil(0);
            machine.files[folder + file] = Bytes(text.begin(), text.end());
        }
        machine.identities[std::string("/dev/") + (drive + kChannelPart)] = input.TakeCounted();
    }
    machine.disk.push_back({kTable, input.Take(kTableSize)});
    for (std::size_t i = 0; i < kMaxExtended && !input.IsEmpty(); ++i) {
        const std::uint64_t cylinder = input.TakeLe16();
        machine.disk.push_back(
            {cylinder * kBytesPerCylinder + kTable, input.Take(kExtendedEntries)});
    }
}

}  // namespace fuzz
