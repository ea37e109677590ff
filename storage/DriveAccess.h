// SPDX-License-Identifier: MIT
//
// Files, directories and drives as the kernel shows them. Together with _llseek this is the only
// place where the storage subsystem touches the machine, and it only reads.
#ifndef TALVANE_STORAGE_DRIVEACCESS_H
#define TALVANE_STORAGE_DRIVEACCESS_H

#include <cstddef>

namespace talvane {

// The unit, in bytes, in which the kernel and partition tables count.
constexpr unsigned long long kSectorSize = 512;

[[nodiscard]] bool DirectoryCanBeOpened(const char* path);

// A file opened for reading, closed when it goes out of scope.
class ReadOnlyFile {
public:
    explicit ReadOnlyFile(const char* path);
    ~ReadOnlyFile();
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;

    [[nodiscard]] bool IsOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] int Descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

// Reads on from where the last access ended. Returns how many bytes it read and fills the rest of
// `out` with zeros.
std::size_t ReadBytes(int descriptor, void* out, std::size_t size);

// Moves to an offset from the start. When that is refused, the next read starts where the last one
// ended.
void SeekTo(int descriptor, long offset);

// Asks a drive for its identity block. Returns false when it refuses; the block is then zero.
constexpr std::size_t kIdentitySize = 512;
[[nodiscard]] bool ReadIdentity(int descriptor, unsigned char (&identity)[kIdentitySize]);

}  // namespace talvane

#endif
