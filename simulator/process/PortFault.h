// SPDX-License-Identifier: MIT
//
// Executes port instructions in place of the processor, which answers them with a general
// protection fault in an unprivileged process.
#ifndef TALVANE_SIMULATOR_PROCESS_PORTFAULT_H
#define TALVANE_SIMULATOR_PROCESS_PORTFAULT_H

#include <csignal>

namespace sim {

// While it lives, it handles SIGSEGV. Faults of anything but a port instruction go to the previous
// handler.
class PortFaultHandler {
public:
    PortFaultHandler();
    ~PortFaultHandler();
    PortFaultHandler(const PortFaultHandler&) = delete;
    PortFaultHandler& operator=(const PortFaultHandler&) = delete;
};

}  // namespace sim

#endif
