// SPDX-License-Identifier: MIT
//
// Reads PCI configuration space through configuration mechanism #1 (PCI 3.0, 3.2.2.3.2): an address
// written to one port selects the double word that can be read at the other port.
//
// REQUIRES, while m_InitOK is set: I/O privilege level 3. Whoever creates a scan raises it and sets
// m_InitOK. One scan at a time in a process: two would mix up their addresses and answers.
#ifndef TALVANE_PCI_PCISCAN_H
#define TALVANE_PCI_PCISCAN_H

#include <list>

#include "../Export.h"
#include "PCIdevice.h"

class TALVANE_EXPORT PCIscan {
public:
    // Sets the fields to no port access and the two standard ports. Does not touch the machine.
    PCIscan();

    int isInitOK();  // non-zero when port access is allowed

    // Returns 1 when a function has this class and sub-class, else 0. Kept: an absent function
    // counts with the header that is read in its place, which is all ones.
    int searchDevice(short classCode, short subClassCode);

    // Empties the list and appends every function of buses 0 to 10, in the order of bus, device and
    // function. Returns 0, or -1 when there are more than 64; the list then holds the first 64.
    int getAllDevice(std::list<PCIdevice>& devices);

    // Reads the header of one function into m_dev. Returns 0, or -1 when no function answers there;
    // m_dev then has the header that was read and the location that it had before.
    int readPCIheader(unsigned char bus, unsigned char dev, unsigned char func);

    // The double word at `reg`, a multiple of 4; all ones without port access.
    unsigned long readPCIDeviceRegister(unsigned char bus, unsigned char dev, unsigned char func,
                                        unsigned char reg);

    // The word that selects the double word at `reg`.
    unsigned long makeAddress(unsigned char bus, unsigned char dev, unsigned char func,
                              unsigned char reg);

    // Write 32 bits to a port, and read 32 bits from a port. Where a program has methods of these
    // names in front of the library's, all operations above use them.
    void out(unsigned short port, unsigned long value);
    unsigned long in(unsigned short port);

    int m_InitOK;
    int m_RetrieveFunction;  // not used
    unsigned long m_ConfigAddress;
    unsigned long m_DataAddress;
    PCIdevice m_dev;  // the function read last
};
static_assert(sizeof(PCIscan) == 92, "the members above, in this order, without holes");

#endif
