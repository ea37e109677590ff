// SPDX-License-Identifier: MIT
//
// One PCI function: its location and its configuration header.
#ifndef TALVANE_PCI_PCIDEVICE_H
#define TALVANE_PCI_PCIDEVICE_H

#include <stddef.h>

#include "../Export.h"

// The first 64 bytes of configuration space with the names of a type 0 header (PCI 3.0, figure
// 6-1). A bridge's header is read under the same names.
struct _HEADER {
    unsigned short VendorID;
    unsigned short DeviceID;
    unsigned short Command;
    unsigned short Status;
    unsigned char RevisionID;
    unsigned char ProgIF;
    unsigned char SubClassCode;
    unsigned char ClassCode;
    unsigned char CLS;  // cache line size
    unsigned char latency;
    unsigned char HeaderType;
    unsigned char BIST;
    unsigned long BaseAddress[6];
    unsigned long Reserved1[2];
    unsigned long ROMBase;
    unsigned long Reserved2[2];
    unsigned char INTLine;
    unsigned char INTPin;
    unsigned char Minlat;
    unsigned char MaxLat;
};
static_assert(sizeof(_HEADER) == 64, "the memory image of a header");
static_assert(offsetof(_HEADER, Status) == 6, "status register");
static_assert(offsetof(_HEADER, RevisionID) == 8, "revision, then the three class bytes");
static_assert(offsetof(_HEADER, HeaderType) == 14, "header type");
static_assert(offsetof(_HEADER, BaseAddress) == 16, "base address registers");
static_assert(offsetof(_HEADER, ROMBase) == 48, "expansion ROM base address");
static_assert(offsetof(_HEADER, INTLine) == 60, "interrupt line");

class TALVANE_EXPORT PCIdevice {
public:
    PCIdevice();                         // all bytes zero, at 0:0.0
    explicit PCIdevice(_HEADER* image);  // copies the header; at 0:0.0

    // Copies a header of 64 bytes; the location stays as it was.
    PCIdevice& operator=(const char* image);

    void setBusNo(int number);
    void setDevNo(int number);
    void setFuncNo(int number);
    int getBusNo();
    int getDevNo();
    int getFuncNo();

    unsigned short getVendorID();
    unsigned short getStatus();
    unsigned char getClassCode();
    unsigned char getSubClassCode();
    unsigned char getProgIF();
    unsigned char getIntLine();
    unsigned char getRevisionID();

    _HEADER header;
    int bus;
    int dev;
    int func;
};
static_assert(sizeof(PCIdevice) == 76, "a header and its location");

#endif
