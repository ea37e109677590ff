// SPDX-License-Identifier: MIT
//
// Behaves as the kernel's drivers/char/mem.c: seeking never fails for an address of memory, and a
// read past the end of memory fails as a whole with EFAULT.

#include "simulator/machine/MemoryDevice.h"

#include <fcntl.h>
#include <unistd.h>

namespace sim {
namespace {

class OpenMemory : public OpenFile {
public:
    explicit OpenMemory(const PhysicalMemory& memory) : memory_(memory) {}

    Answer Read(void* out, std::size_t size) override {
        if (!memory_.Read(position_, {static_cast<std::uint8_t*>(out), size}))
            return Answer::Failed(EFAULT);
        position_ += size;
        return {static_cast<std::int64_t>(size)};
    }

    Answer Seek(std::int64_t offset, int whence) override {
        // This device has no end for the kernel.
        if (whence != SEEK_SET && whence != SEEK_CUR) return Answer::Failed(EINVAL);
        const std::int64_t base = whence == SEEK_CUR ? static_cast<std::int64_t>(position_) : 0;
        // Addresses have 32 bits, so an off_t past 2 GiB arrives as a negative number. The last
        // 4095 values would be error numbers to the caller.
        const std::int64_t target = base + offset;
        if (target < 0 && target >= -4095) return Answer::Failed(EOVERFLOW);
        position_ =
            target < 0 ? static_cast<std::uint32_t>(target) : static_cast<std::uint64_t>(target);
        return {static_cast<std::int64_t>(position_)};
    }

    std::uint64_t Position() const override { return position_; }

private:
    const PhysicalMemory& memory_;
    std::uint64_t position_ = 0;
};

}  // namespace

std::unique_ptr<OpenFile> MemoryDevice::Open(int flags, int& error) {
    if ((flags & O_ACCMODE) != O_RDONLY) {
        error = EACCES;
        return nullptr;
    }
    return std::make_unique<OpenMemory>(memory_);
}

}  // namespace sim
