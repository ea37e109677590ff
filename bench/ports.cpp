// SPDX-License-Identifier: MIT
//
// The scan's port primitives of an agent that links this, in front of the library's own, since port
// instructions trap and do not run under callgrind. Bus 0 has as many functions, Ethernet
// controllers, as BENCH_FUNCTIONS says, by default none.
#include <cstdlib>

#include "PCI/PCIscan.h"

static unsigned long address;

void PCIscan::out(unsigned short, unsigned long value) {
    address = value;
}

unsigned long PCIscan::in(unsigned short) {
    static const char* const wanted = std::getenv("BENCH_FUNCTIONS");
    static const unsigned long functions =
        wanted == nullptr ? 0 : std::strtoul(wanted, nullptr, 10);
    const unsigned long reg = address & 0xFF;
    if ((address >> 8 & 0xFFFF) >= functions) return 0xFFFFFFFF;
    return reg == 0 ? 0x100E8086 : reg == 8 ? 0x02000000 : 0;
}
