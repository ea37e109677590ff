// SPDX-License-Identifier: MIT
//
// The scan's two port primitives, put in front of the library's own: they hand each access to the
// simulated server without executing an instruction, whose fault costs more than all the rest. A
// full scan makes 90,112 accesses.
#include "PCI/PCIscan.h"
#include "simulator/machine/Machine.h"
#include "simulator/process/Interpose.h"

void PCIscan::out(unsigned short port, unsigned long value) {
    sim::Interposition::GetMachine()->PortOut(port, 4, value);
}

unsigned long PCIscan::in(unsigned short port) {
    return sim::Interposition::GetMachine()->PortIn(port, 4);
}
