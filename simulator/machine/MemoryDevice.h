// SPDX-License-Identifier: MIT
//
// /dev/mem of a 32-bit kernel.
#ifndef TALVANE_SIMULATOR_MACHINE_MEMORYDEVICE_H
#define TALVANE_SIMULATOR_MACHINE_MEMORYDEVICE_H

#include "simulator/machine/Device.h"
#include "simulator/machine/PhysicalMemory.h"

namespace sim {

class MemoryDevice : public Device {
public:
    explicit MemoryDevice(const PhysicalMemory& memory) : memory_(memory) {}

    // Reading only: a simulated memory has no writer, so that is refused with EACCES.
    std::unique_ptr<OpenFile> Open(int flags, int& error) override;

private:
    const PhysicalMemory& memory_;
};

}  // namespace sim

#endif
