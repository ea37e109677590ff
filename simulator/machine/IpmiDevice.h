// SPDX-License-Identifier: MIT
//
// The ways by which a program reaches the controller: the device /dev/ipmi with its one request,
// and the ports by which a program detects a system interface.
#ifndef TALVANE_SIMULATOR_MACHINE_IPMIDEVICE_H
#define TALVANE_SIMULATOR_MACHINE_IPMIDEVICE_H

#include <memory>

#include "simulator/bmc/Bmc.h"
#include "simulator/machine/Device.h"

namespace sim {

class IpmiDevice : public Device {
public:
    explicit IpmiDevice(std::shared_ptr<Bmc> bmc) : bmc_(std::move(bmc)) {}

    // Any access mode is accepted.
    std::unique_ptr<OpenFile> Open(int flags, int& error) override;

private:
    std::shared_ptr<Bmc> bmc_;
};

// A register of a system interface. It always reads as the given value and ignores writes.
class InterfaceRegister : public PortDevice {
public:
    explicit InterfaceRegister(std::uint8_t value) : value_(value) {}

    std::uint32_t In(std::uint16_t, unsigned) override { return value_; }
    void Out(std::uint16_t, unsigned, std::uint32_t) override {}

private:
    std::uint8_t value_;
};

}  // namespace sim

#endif
