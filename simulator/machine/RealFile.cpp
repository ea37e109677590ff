// SPDX-License-Identifier: MIT
//
// System calls on the descriptor of a real file.

#include "simulator/machine/RealFile.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace sim {
namespace {

Answer AnswerFromSystemCall(long result) {
    return result < 0 ? Answer::Failed(errno) : Answer{result};
}

}  // namespace

std::unique_ptr<RealFile> RealFile::Open(const std::string& path, int flags, int& error) {
    constexpr int kKept = O_NONBLOCK | O_CLOEXEC;
    const long descriptor =
        syscall(SYS_openat, AT_FDCWD, path.c_str(), O_RDONLY | O_LARGEFILE | (flags & kKept));
    error = errno;
    if (descriptor < 0) return nullptr;
    return std::make_unique<RealFile>(static_cast<int>(descriptor));
}

Answer RealFile::Read(void* out, std::size_t size) {
    return AnswerFromSystemCall(syscall(SYS_read, descriptor_, out, size));
}

Answer RealFile::Seek(std::int64_t offset, int whence) {
    std::int64_t position = 0;
    const Answer moved = AnswerFromSystemCall(
        syscall(SYS__llseek, descriptor_, static_cast<std::uint32_t>(offset >> 32),
                static_cast<std::uint32_t>(offset), &position, whence));
    return moved.Ok() ? Answer{position} : moved;
}

std::optional<Answer> RealFile::Ioctl(unsigned long request, void* argument) {
    return AnswerFromSystemCall(syscall(SYS_ioctl, descriptor_, request, argument));
}

std::uint64_t RealFile::Position() const {
    std::uint64_t position = 0;
    (void)syscall(SYS__llseek, descriptor_, 0, 0, &position, SEEK_CUR);
    return position;
}

}  // namespace sim
