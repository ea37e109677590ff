// SPDX-License-Identifier: MIT
//
// Files, directories and drives as the kernel shows them: the one place, with _llseek, where the
// storage subsystem touches the machine. Everything here only reads.
#ifndef TALVANE_STORAGE_DRIVEACCESS_H
#define TALVANE_STORAGE_DRIVEACCESS_H

#include <cstddef>

#include "base/Bytes.h"

// In which the kernel and partition tables count.
constexpr unsigned long long kSectorSize = 512;

[[nodiscard]] bool DirectoryCanBeOpened(const char* path);

// A file opened for reading, closed when it goes out of scope.
class ReadOnlyFile {
public:
    explicit ReadOnlyFile(const char* path);
    ~ReadOnlyFile();
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;

    [[nodiscard]] bool IsOpen() const { return descriptor >= 0; }
    [[nodiscard]] int Descriptor() const { return descriptor; }

private:
    int descriptor;
};

// Reads on from where the last access ended. Returns how many bytes came; those that did not are
// zero.
std::size_t ReadBytes(int descriptor, void* out, std::size_t size);

// Moves to an offset from the start. A refused move shows in what is read next.
void SeekTo(int descriptor, long offset);

// Asks a drive for its identity block. Returns false when it refuses.
constexpr std::size_t kIdentitySize = 512;
[[nodiscard]] bool ReadIdentity(int descriptor, unsigned char (&identity)[kIdentitySize]);

#endif
