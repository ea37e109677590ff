// SPDX-License-Identifier: MIT
//
// /dev/ipmi within the process: each open file sends its requests to a controller by itself.
#ifndef TALVANE_SIMULATOR_HOST_HOSTIPMI_H
#define TALVANE_SIMULATOR_HOST_HOSTIPMI_H

#include <functional>
#include <memory>

#include "simulator/machine/Device.h"
#include "transport/Message.h"
#include "transport/Reservation.h"

namespace sim {

class HostIpmi : public Device {
public:
    // A new way to the controller for an open file; null, with `error` set, when there is none.
    using Connect = std::function<std::unique_ptr<transport::Controller>(int& error)>;

    // Unless it may change the controller, a command that is not known to read only is answered
    // with completion code 0xD4 (insufficient privilege), and named on standard error.
    HostIpmi(Connect connect, bool mayChange)
        : connect_(std::move(connect)), mayChange_(mayChange) {}

    std::unique_ptr<OpenFile> Open(int flags, int& error) override;

private:
    Connect connect_;
    bool mayChange_;
    transport::Reservation reservation_;
};

// Ways to the BMC by the kernel's device at this path, such as /dev/ipmi0.
HostIpmi::Connect ThroughKernel(const std::string& path);

}  // namespace sim

#endif
