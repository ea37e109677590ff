// SPDX-License-Identifier: MIT
//
// The default behaviour of an open file.

#include "simulator/machine/Device.h"

#include <sys/mman.h>

namespace sim {

int OpenFile::MakeDescriptor(const char* path) const {
    return memfd_create(path, MFD_CLOEXEC);
}

std::optional<Answer> OpenFile::Ioctl(unsigned long, void*) {
    return std::nullopt;
}

}  // namespace sim
