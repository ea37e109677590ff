// SPDX-License-Identifier: MIT
//
// The system calls of the storage subsystem, but for _llseek.

#include "storage/DriveAccess.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/hdreg.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstring>

namespace talvane {

bool DirectoryCanBeOpened(const char* path) {
    DIR* const directory = opendir(path);
    if (directory == nullptr) return false;
    (void)closedir(directory);  // result not used: nothing was read from it
    return true;
}

ReadOnlyFile::ReadOnlyFile(const char* path) : descriptor_(open(path, O_RDONLY)) {}

ReadOnlyFile::~ReadOnlyFile() {
    if (IsOpen()) (void)close(descriptor_);  // result not used: nothing was written
}

std::size_t ReadBytes(int descriptor, void* out, std::size_t size) {
    std::memset(out, 0, size);
    const ssize_t delivered = read(descriptor, out, size);
    return delivered > 0 ? static_cast<std::size_t>(delivered) : 0;
}

void SeekTo(int descriptor, long offset) {
    (void)lseek(descriptor, offset, SEEK_SET);  // result not used: the next read shows it
}

bool ReadIdentity(int descriptor, unsigned char (&identity)[kIdentitySize]) {
    std::memset(identity, 0, sizeof identity);
    return ioctl(descriptor, HDIO_GET_IDENTITY, identity) == 0;
}

}  // namespace talvane
