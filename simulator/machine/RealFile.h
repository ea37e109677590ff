// SPDX-License-Identifier: MIT
//
// A file of the real system as an open file of a machine. Everything goes to its descriptor by
// system calls, which no interposed function sees, and so agrees with the program's own direct
// system calls on that descriptor.
#ifndef TALVANE_SIMULATOR_MACHINE_REALFILE_H
#define TALVANE_SIMULATOR_MACHINE_REALFILE_H

#include <memory>
#include <string>

#include "simulator/machine/Device.h"

namespace sim {

class RealFile : public OpenFile {
public:
    // Takes the descriptor over; whoever asks for MakeDescriptor closes it.
    explicit RealFile(int descriptor) : descriptor_(descriptor) {}

    // Opens the file for reading, whatever `flags` ask for, so that nothing is ever written to it.
    // Null, with `error` set, when it cannot be opened.
    static std::unique_ptr<RealFile> Open(const std::string& path, int flags, int& error);

    int MakeDescriptor(const char*) const override { return descriptor_; }
    Answer Read(void* out, std::size_t size) override;
    Answer Seek(std::int64_t offset, int whence) override;
    std::optional<Answer> Ioctl(unsigned long request, void* argument) override;
    std::uint64_t Position() const override;

private:
    int descriptor_;
};

}  // namespace sim

#endif
