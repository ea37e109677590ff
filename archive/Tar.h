// SPDX-License-Identifier: MIT
//
// Tar files in memory. Nothing is unpacked to a disk.
#ifndef TALVANE_ARCHIVE_TAR_H
#define TALVANE_ARCHIVE_TAR_H

#include <ctime>
#include <span>

#include "archive/Files.h"

namespace archive {

// The files in the order of their names, for their owner alone (mode 0600, user and group 0), with
// this time: the same files and time give the same bytes. std::length_error for a name of more than
// 100 bytes.
Bytes WriteTar(const Files& files, std::time_t time);

// The regular files of a tar file that may come from a stranger. Folders are allowed and have no
// content. Throws Error, which names the entry, for all else: a path that is absolute or leads out
// of the archive, a link, a device, a FIFO or any other type, a name that is there twice or is that
// of a file and a folder, an entry or a sum beyond the limits, a damaged header, and a file that
// ends too early or goes on after its end. A leading "./" of names is taken off.
Files ReadTar(std::span<const std::uint8_t> tar);

}  // namespace archive

#endif
