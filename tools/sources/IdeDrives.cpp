// SPDX-License-Identifier: MIT
//
// Why drives and their sectors could not be read.

#include "tools/library/IdeDrives.h"

#include <fcntl.h>

#include <cerrno>

#include "tools/base/Descriptor.h"
#include "tools/base/Folder.h"
#include "tools/base/Source.h"
#include "tools/sources/ErrorText.h"

namespace tool {
namespace {

std::string WhyDrivesNotRead() {
    if (!CanBeListed("/proc/ide"))
        return "cannot open /proc/ide: " +
               ErrorText(errno, "no IDE controller, or a kernel from 5.14 on");
    return "the drives in /proc/ide could not be listed";
}

std::string WhyDisksNotRead() {
    for (const Drive& drive : ReadDrives().value_or(Drives{})) {
        const std::string path = DevicePath(drive);
        const Descriptor disk(path.c_str(), O_RDONLY);
        if (!disk.IsOpen())
            return "cannot open " + path + ": " + ErrorText(errno, "there is no such device file");
    }
    return "a disk could not be opened";
}

}  // namespace

const Source kIdeDrives{"/proc/ide", WhyDrivesNotRead, "drives"};
const Source kDisks{"/dev/hd*", WhyDisksNotRead, "drives"};

}  // namespace tool
