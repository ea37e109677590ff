// SPDX-License-Identifier: MIT
//
// The PCI functions of a simulated server, reached by configuration mechanism #1
// (PCI 3.0, 3.2.2.3.2): an address register at port 0xCF8 and a data window at 0xCFC.
#ifndef TALVANE_SIMULATOR_MACHINE_PCIBUS_H
#define TALVANE_SIMULATOR_MACHINE_PCIBUS_H

#include <compare>
#include <cstdint>
#include <map>
#include <string>

#include "simulator/base/Bytes.h"
#include "simulator/machine/Device.h"

namespace sim {

struct PciLocation {
    unsigned bus;       // 0 to 255
    unsigned device;    // 0 to 31
    unsigned function;  // 0 to 7

    auto operator<=>(const PciLocation&) const = default;
    std::string Text() const;  // 00:1f.1
};

class PciBus : public PortDevice {
public:
    static constexpr std::uint16_t kFirstPort = 0xCF8;
    static constexpr std::uint16_t kPorts = 8;
    static constexpr std::size_t kConfigurationSize = 256;  // the bytes that the mechanism reaches

    // Adds a function, or replaces the configuration space of one. Bytes after the given ones read
    // as zero. std::invalid_argument for more than 256 bytes and for a location that cannot exist.
    void Set(const PciLocation& location, Bytes configuration);

    // A location without a function reads as all ones. Writes to configuration space are ignored.
    std::uint32_t In(std::uint16_t port, unsigned width) override;
    void Out(std::uint16_t port, unsigned width, std::uint32_t value) override;

private:
    // The function that the address register selects; null when there is none.
    const Bytes* Selected() const;

    std::map<PciLocation, Bytes> functions_;
    std::uint32_t address_ = 0;
};

}  // namespace sim

#endif
