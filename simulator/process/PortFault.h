// SPDX-License-Identifier: MIT
//
// Executes port instructions in place of the processor, which refuses them to an unprivileged
// process with a general protection fault.
#ifndef TALVANE_SIMULATOR_PROCESS_PORTFAULT_H
#define TALVANE_SIMULATOR_PROCESS_PORTFAULT_H

#include <csignal>

namespace sim {

// While one lives, SIGSEGV belongs to the simulated server; faults that are no port instruction go
// to the handler that was there before.
class PortFaultHandler {
public:
    PortFaultHandler();
    ~PortFaultHandler();
    PortFaultHandler(const PortFaultHandler&) = delete;
    PortFaultHandler& operator=(const PortFaultHandler&) = delete;
};

}  // namespace sim

#endif
