// SPDX-License-Identifier: MIT
//
// Which I/O ports a server has. Ports that software probes for devices read all ones while no
// device answers there, as a real bus does.
#ifndef TALVANE_SIMULATOR_MACHINE_PORTMAP_H
#define TALVANE_SIMULATOR_MACHINE_PORTMAP_H

#include <cstdint>
#include <memory>
#include <vector>

#include "simulator/machine/Device.h"

namespace sim {

class PortMap {
public:
    PortMap();

    // Answers `count` ports from `first`; covers what answered there before.
    void Install(std::uint16_t first, std::uint16_t count, std::shared_ptr<PortDevice> device);

    // The device that answers all the ports of an access; null when none does.
    PortDevice* Find(std::uint16_t port, unsigned width) const;

private:
    struct Range {
        unsigned first;
        unsigned end;
        std::shared_ptr<PortDevice> device;
    };
    std::vector<Range> ranges_;  // the last one that matches counts
};

}  // namespace sim

#endif
