// SPDX-License-Identifier: MIT
//
// The I/O ports that a server has. Ports that software probes for devices read as all ones while no
// device answers there, as on a real bus.
#ifndef TALVANE_SIMULATOR_MACHINE_PORTMAP_H
#define TALVANE_SIMULATOR_MACHINE_PORTMAP_H

#include <cstdint>
#include <memory>
#include <vector>

#include "simulator/machine/Device.h"

namespace sim {

// The registers by which software detects the system interfaces of a controller.
inline constexpr std::uint16_t kKcsStatusPort = 0xCA3;  // IPMI 2.0, 9.5
inline constexpr std::uint16_t kSmicFlagsPort = 0xCAA;  // IPMI 2.0, 10.2

class PortMap {
public:
    PortMap();

    // Lets the device answer `count` ports from `first`, in place of earlier devices.
    void Install(std::uint16_t first, std::uint16_t count, std::shared_ptr<PortDevice> device);

    // The device that answers every port of an access; null when there is none.
    PortDevice* Find(std::uint16_t port, unsigned width) const;

private:
    struct Range {
        unsigned first;
        unsigned end;
        std::shared_ptr<PortDevice> device;
    };
    std::vector<Range> ranges_;  // the last one that matches wins
};

}  // namespace sim

#endif
