// SPDX-License-Identifier: MIT
//
// The system calls on /dev/mem.

#include "SmBios/PhysicalMemory.h"

#include <fcntl.h>
#include <unistd.h>

namespace talvane {

PhysicalMemory::PhysicalMemory() : descriptor_(open("/dev/mem", O_RDONLY)) {}

PhysicalMemory::~PhysicalMemory() {
    if (IsOpen()) (void)close(descriptor_);  // result not used: nothing was written
}

bool PhysicalMemory::Seek(std::uint32_t address) {
    return lseek(descriptor_, static_cast<off_t>(address), SEEK_SET) != -1;
}

long PhysicalMemory::Read(unsigned char* out, std::size_t size) {
    return read(descriptor_, out, size);
}

}  // namespace talvane
