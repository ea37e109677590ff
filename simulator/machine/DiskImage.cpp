// SPDX-License-Identifier: MIT
//
// A disk of zeroes is a sparse file in memory; an image is the file itself, opened for reading.

#include "simulator/machine/DiskImage.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace sim {
namespace {

constexpr std::uint64_t kPartitionTable = 446;
constexpr std::uint64_t kPartitionEntrySize = 16;

[[noreturn]] void ThrowSystemError(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

void PutDoubleWord(std::uint8_t* at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) at[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

}  // namespace

DiskImage::DiskImage(std::uint64_t sectors)
    : memory_(memfd_create("disk", MFD_CLOEXEC)), sectors_(sectors) {
    if (memory_ < 0) ThrowSystemError("a simulated disk");
    path_ = "/proc/self/fd/" + std::to_string(memory_);
    if (ftruncate64(memory_, static_cast<off64_t>(sectors * kSectorSize)) != 0) {
        (void)syscall(SYS_close, memory_);
        ThrowSystemError("a simulated disk of " + std::to_string(sectors) + " sectors");
    }
}

DiskImage::DiskImage(const std::filesystem::path& file) : path_(file.string()) {
    sectors_ = std::filesystem::file_size(file) / kSectorSize;
}

DiskImage::DiskImage(const std::filesystem::path& device, std::uint64_t sectors)
    : path_(device.string()), sectors_(sectors) {}

DiskImage::~DiskImage() {
    if (memory_ >= 0) (void)syscall(SYS_close, memory_);
}

void DiskImage::WriteAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) {
    if (memory_ < 0)
        throw std::logic_error(path_ + " is an image in a file, which is never written to");
    if (offset + bytes.size() > sectors_ * kSectorSize)
        throw std::out_of_range("a disk of " + std::to_string(sectors_) +
                                " sectors does not have these bytes");
    if (pwrite64(memory_, bytes.data(), bytes.size(), static_cast<off64_t>(offset)) < 0)
        ThrowSystemError("a simulated disk");
}

void DiskImage::Write(std::uint64_t sector, std::span<const std::uint8_t> bytes) {
    if (bytes.size() > kSectorSize) throw std::out_of_range("a sector has 512 bytes");
    WriteAt(sector * kSectorSize, bytes);
}

void DiskImage::SetEntry(std::uint64_t sector, unsigned number, const TableEntry& entry) {
    if (number < 1 || number > 4)
        throw std::out_of_range("a partition table has the entries 1 to 4");
    std::array<std::uint8_t, kPartitionEntrySize> bytes{};
    bytes[4] = entry.type;
    PutDoubleWord(&bytes[8], entry.start);
    PutDoubleWord(&bytes[12], entry.sectors);
    WriteAt(sector * kSectorSize + kPartitionTable + (number - 1) * kPartitionEntrySize, bytes);
}

// Opens the path again, so that each descriptor has a position of its own.
int DiskImage::Open() const {
    return static_cast<int>(
        syscall(SYS_openat, AT_FDCWD, path_.c_str(), O_RDONLY | O_LARGEFILE | O_CLOEXEC));
}

}  // namespace sim
