// SPDX-License-Identifier: MIT
//
// IDE drives: their files in /proc/ide, and /dev/hdX with the identity block and the sectors.
#ifndef TALVANE_SIMULATOR_MACHINE_IDEDRIVE_H
#define TALVANE_SIMULATOR_MACHINE_IDEDRIVE_H

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "simulator/machine/DiskImage.h"

namespace sim {

class Machine;

// The 512 bytes that HDIO_GET_IDENTITY returns.
using DriveIdentity = std::array<std::uint8_t, 512>;

struct IdeDrive {
    // The files of its folder and their whole contents, such as {"media", "disk\n"}.
    std::map<std::string, std::string> files;
    std::optional<DriveIdentity> identity;  // without one the drive refuses the request with ENOMSG
    std::shared_ptr<DiskImage> image;       // null: opening the drive fails with ENOMEDIUM
};

// A disk of this size with an empty image. It has all files and an identity block.
IdeDrive MakeDisk(const std::string& model, std::uint64_t sectors, const std::string& serial);

// An identity block with a serial number (20 bytes), firmware version (8) and model (40), each
// filled up with blanks as drives do (ATA-5, 8.12.8).
DriveIdentity MakeIdentity(const std::string& serial, const std::string& firmware,
                           const std::string& model);

// Puts the drive into the machine as hda to hdd, in the channel that the letter means.
// std::invalid_argument for any other letter.
void InstallDrive(Machine& machine, char letter, const IdeDrive& drive);

}  // namespace sim

#endif
