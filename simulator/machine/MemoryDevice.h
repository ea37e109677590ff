// SPDX-License-Identifier: MIT
//
// The device /dev/mem of a 32-bit kernel.
#ifndef TALVANE_SIMULATOR_MACHINE_MEMORYDEVICE_H
#define TALVANE_SIMULATOR_MACHINE_MEMORYDEVICE_H

#include "simulator/machine/Device.h"
#include "simulator/machine/PhysicalMemory.h"

namespace sim {

class MemoryDevice : public Device {
public:
    explicit MemoryDevice(const PhysicalMemory& memory) : memory_(memory) {}

    // For reading only: EACCES for any other mode, since nothing may write to the memory.
    std::unique_ptr<OpenFile> Open(int flags, int& error) override;

private:
    const PhysicalMemory& memory_;
};

}  // namespace sim

#endif
