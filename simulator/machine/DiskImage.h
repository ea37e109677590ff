// SPDX-License-Identifier: MIT
//
// The sectors of a simulated disk, read through real descriptors: programs seek on a disk with
// direct system calls, which no interposed function sees.
#ifndef TALVANE_SIMULATOR_MACHINE_DISKIMAGE_H
#define TALVANE_SIMULATOR_MACHINE_DISKIMAGE_H

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace sim {

// An entry of a boot record's partition table.
struct TableEntry {
    std::uint8_t type = 0;
    std::uint32_t start = 0;
    std::uint32_t sectors = 0;
};

// Throws std::system_error when a system call fails.
class DiskImage {
public:
    static constexpr std::size_t kSectorSize = 512;

    // A disk of zeroes. Only sectors that are written take memory.
    explicit DiskImage(std::uint64_t sectors);

    // The disk whose image is in a file. The file is never written to.
    explicit DiskImage(const std::filesystem::path& file);

    // The same of this size, for a device file, which does not have one. It is first opened by
    // Open().
    DiskImage(const std::filesystem::path& device, std::uint64_t sectors);

    ~DiskImage();
    DiskImage(const DiskImage&) = delete;
    DiskImage& operator=(const DiskImage&) = delete;

    // Write a sector, or an entry of the partition table in a sector. std::out_of_range past the
    // end of the disk and for more than 512 bytes; std::logic_error for an image in a file.
    void Write(std::uint64_t sector, std::span<const std::uint8_t> bytes);
    void SetEntry(std::uint64_t sector, unsigned number, const TableEntry& entry);  // 1 to 4

    std::uint64_t Sectors() const { return sectors_; }

    // A new descriptor for reading, at position 0; owned by the caller. -1 with errno set on
    // failure.
    int Open() const;

private:
    void WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes);

    std::string path_;
    int memory_ = -1;  // descriptor of the disk of zeroes; -1 for an image
    std::uint64_t sectors_ = 0;
};

}  // namespace sim

#endif
