// SPDX-License-Identifier: MIT
//
// I/O ports of the real system as ports of a machine.
#ifndef TALVANE_SIMULATOR_MACHINE_REALPORTS_H
#define TALVANE_SIMULATOR_MACHINE_REALPORTS_H

#include "simulator/machine/Device.h"

namespace sim {

// Raises the I/O privilege for each access alone, so that no port instruction of the program itself
// passes the machine by. Where the kernel refuses it, a port reads as all ones.
class RealPorts : public PortDevice {
public:
    std::uint32_t In(std::uint16_t port, unsigned width) override;
    void Out(std::uint16_t port, unsigned width, std::uint32_t value) override;
};

}  // namespace sim

#endif
