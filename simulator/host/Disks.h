// SPDX-License-Identifier: MIT
//
// The disks of the running system, in the four places for disks that agents know.
#ifndef TALVANE_SIMULATOR_HOST_DISKS_H
#define TALVANE_SIMULATOR_HOST_DISKS_H

#include <map>
#include <string>
#include <vector>

#include "simulator/host/HostFiles.h"
#include "simulator/machine/IdeDrive.h"

namespace sim {

// The names of up to four disks by the letters 'a' to 'd', chosen from the names in /sys/block:
// disks of the kinds sd, nvme, vd and hd, in this order, and as they are numbered. A disk hda to
// hdd keeps its letter.
std::map<char, std::string> ChooseDisks(const std::vector<std::string>& names);

// A disk as an IDE drive: model, size and identity as its driver says, where that answers the
// request for an identity block, else as sysfs says. Its sectors can only be read. A disk that
// cannot be opened has an image all the same, whose opening fails.
IdeDrive DiskAsDrive(const HostFiles& files, const std::string& name);

struct UnopenedDisk {
    std::string path;
    int error;  // errno
};

// "cannot open PATH, PATH: REASON (ADVICE)" of the disks with the same reason; those with another
// one follow after a semicolon.
std::string CannotOpenDisks(const std::vector<UnopenedDisk>& disks);

}  // namespace sim

#endif
