// SPDX-License-Identifier: MIT
//
// Physical memory through /dev/mem: the only place where the SMBIOS subsystem touches the machine.
#ifndef TALVANE_SMBIOS_PHYSICALMEMORY_H
#define TALVANE_SMBIOS_PHYSICALMEMORY_H

#include <cstddef>
#include <cstdint>

namespace talvane {

// An open /dev/mem, closed when it goes out of scope.
class PhysicalMemory {
public:
    // Check IsOpen afterwards; errno says why it is not open.
    PhysicalMemory();
    ~PhysicalMemory();
    PhysicalMemory(const PhysicalMemory&) = delete;
    PhysicalMemory& operator=(const PhysicalMemory&) = delete;

    [[nodiscard]] bool IsOpen() const { return descriptor_ >= 0; }

    // Moves to a physical address below 2 GiB. Returns false, with errno set, when refused.
    [[nodiscard]] bool Seek(std::uint32_t address);

    // Reads on from where the last access ended. Returns how many bytes it read, which may be fewer
    // than asked for: 0 at the end of memory. Returns -1 for a refused read.
    [[nodiscard]] long Read(unsigned char* out, std::size_t size);

private:
    int descriptor_;
};

}  // namespace talvane

#endif
