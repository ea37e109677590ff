// SPDX-License-Identifier: MIT
//
// Finds the device of a port; some ports have an empty bus in place of a device.

#include "simulator/machine/PortMap.h"

#include <algorithm>

namespace sim {
namespace {

// A port of one byte on a bus where no device drives the data lines: it reads as all ones and
// ignores writes.
class EmptyPort : public PortDevice {
public:
    std::uint32_t In(std::uint16_t, unsigned) override { return 0xFF; }
    void Out(std::uint16_t, unsigned, std::uint32_t) override {}
};

}  // namespace

PortMap::PortMap() {
    const auto nobody = std::make_shared<EmptyPort>();
    Install(kKcsStatusPort, 1, nobody);
    Install(kSmicFlagsPort, 1, nobody);
}

void PortMap::Install(std::uint16_t first, std::uint16_t count,
                      std::shared_ptr<PortDevice> device) {
    ranges_.push_back({first, unsigned{first} + count, std::move(device)});
}

PortDevice* PortMap::Find(std::uint16_t port, unsigned width) const {
    const auto range = std::find_if(ranges_.rbegin(), ranges_.rend(), [=](const Range& candidate) {
        return port >= candidate.first && port + width <= candidate.end;
    });
    return range != ranges_.rend() ? range->device.get() : nullptr;
}

}  // namespace sim
