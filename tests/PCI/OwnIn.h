// SPDX-License-Identifier: MIT
//
// An agent, in a library of its own, that has only one of the two port methods.
#ifndef TALVANE_TESTS_PCI_OWNIN_H
#define TALVANE_TESTS_PCI_OWNIN_H

class PCIscan;

constexpr unsigned long kOwnAnswer = 0x8001FEDC;

// Reads the header of bus 3, device 4, function 5 by the library.
extern "C" [[gnu::visibility("default")]] int ReadHeaderAsAgent(PCIscan& scan);

#endif
