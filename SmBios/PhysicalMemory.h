// SPDX-License-Identifier: MIT
//
// Physical memory through /dev/mem: the one place where the SMBIOS subsystem touches the machine.
#ifndef TALVANE_SMBIOS_PHYSICALMEMORY_H
#define TALVANE_SMBIOS_PHYSICALMEMORY_H

#include <cstddef>
#include <cstdint>

// An open /dev/mem, closed when it goes out of scope.
class PhysicalMemory {
public:
    // Check IsOpen afterwards; errno tells why it is not.
    PhysicalMemory();
    ~PhysicalMemory();
    PhysicalMemory(const PhysicalMemory&) = delete;
    PhysicalMemory& operator=(const PhysicalMemory&) = delete;

    [[nodiscard]] bool IsOpen() const { return descriptor >= 0; }

    // Moves to a physical address below 2 GiB. Returns false, with errno set, when refused.
    [[nodiscard]] bool Seek(std::uint32_t address);

    // Reads on from where the last access ended. Returns the bytes delivered, which can be fewer
    // than asked for, 0 at the end of memory and -1 for a refused read.
    [[nodiscard]] long Read(unsigned char* out, std::size_t size);

private:
    int descriptor;
};

#endif
