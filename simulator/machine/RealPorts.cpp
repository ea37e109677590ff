// SPDX-License-Identifier: MIT
//
// Calls the kernel by its number, since iopl itself is answered by a machine.

#include "simulator/machine/RealPorts.h"

#include <sys/io.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace sim {
namespace {

class PortAccess {
public:
    PortAccess() : granted_(syscall(SYS_iopl, 3) == 0) {}
    ~PortAccess() {
        if (granted_) (void)syscall(SYS_iopl, 0);  // result not used: lowering is always allowed
    }
    PortAccess(const PortAccess&) = delete;
    PortAccess& operator=(const PortAccess&) = delete;

    bool IsGranted() const { return granted_; }

private:
    bool granted_;
};

}  // namespace

std::uint32_t RealPorts::In(std::uint16_t port, unsigned width) {
    const PortAccess access;
    if (!access.IsGranted()) return width == 4 ? 0xFFFFFFFF : (1u << (8 * width)) - 1;
    return width == 4 ? inl(port) : width == 2 ? inw(port) : inb(port);
}

void RealPorts::Out(std::uint16_t port, unsigned width, std::uint32_t value) {
    const PortAccess access;
    if (!access.IsGranted()) return;
    if (width == 4)
        outl(value, port);
    else if (width == 2)
        outw(static_cast<std::uint16_t>(value), port);
    else
        outb(static_cast<std::uint8_t>(value), port);
}

}  // namespace sim
