// SPDX-License-Identifier: MIT
//
// An agent that has a method PCIscan::in of its own, and none of the others. It touches no port.
#include "PCI/OwnIn.h"

#include "PCI/PCIscan.h"

unsigned long PCIscan::in(unsigned short) {
    return kOwnAnswer;
}

int ReadHeaderAsAgent(PCIscan& scan) {
    return scan.readPCIheader(3, 4, 5);
}
