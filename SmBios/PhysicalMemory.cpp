// SPDX-License-Identifier: MIT

#include "SmBios/PhysicalMemory.h"

#include <fcntl.h>
#include <unistd.h>

PhysicalMemory::PhysicalMemory() : descriptor(open("/dev/mem", O_RDONLY)) {}

PhysicalMemory::~PhysicalMemory() {
    if (IsOpen()) (void)close(descriptor);  // result not used: nothing was written
}

bool PhysicalMemory::Seek(std::uint32_t address) {
    return lseek(descriptor, static_cast<off_t>(address), SEEK_SET) != -1;
}

long PhysicalMemory::Read(unsigned char* out, std::size_t size) {
    return read(descriptor, out, size);
}
