// SPDX-License-Identifier: MIT
//
// The two entry points that lead to the structure table. They are packed, because they are images
// of what the firmware puts into physical memory between 0xF0000 and 0xFFFFF.
#ifndef TALVANE_SMBIOS_ENTRYPOINT_H
#define TALVANE_SMBIOS_ENTRYPOINT_H

#include <cstddef>

#pragma pack(push, 1)

// SMBIOS entry point structure (SMBIOS 2.3.4, section 2.1.1).
struct SmBiosTableEntryPoint {
    char anchor[4];  // "_SM_"
    unsigned char checksum;
    unsigned char length;
    unsigned char MajorVersion;
    unsigned char MinorVersion;
    unsigned short MaxStructureSize;
    unsigned char revission;
    unsigned char FormattedArea[5];
    char IntermediateAnchorString[5];  // "_DMI_"
    unsigned char IntermediateCheckSum;
    unsigned short StructureTableLength;
    unsigned int StructureTableAddress;
    unsigned short HowManyStructures;
    unsigned char BCD;
};

// Entry point of the DMI table that came before SMBIOS. It equals the last 15 bytes of the other
// one.
struct DMITableEntryPoint {
    char anchor[5];  // "_DMI_"
    unsigned char checksum;
    unsigned short StructureTableLength;
    unsigned int biosStructureTableAddress;
    unsigned short HowManyStructures;
    unsigned char dmiBiosRevision;
};

#pragma pack(pop)

static_assert(sizeof(SmBiosTableEntryPoint) == 31, "31 bytes in memory");
static_assert(offsetof(SmBiosTableEntryPoint, MajorVersion) == 6, "in memory");
static_assert(offsetof(SmBiosTableEntryPoint, MaxStructureSize) == 8, "in memory");
static_assert(offsetof(SmBiosTableEntryPoint, IntermediateAnchorString) == 16, "in memory");
static_assert(offsetof(SmBiosTableEntryPoint, StructureTableLength) == 22, "in memory");
static_assert(offsetof(SmBiosTableEntryPoint, StructureTableAddress) == 24, "in memory");
static_assert(offsetof(SmBiosTableEntryPoint, HowManyStructures) == 28, "in memory");

static_assert(sizeof(DMITableEntryPoint) == 15, "15 bytes in memory");
static_assert(offsetof(DMITableEntryPoint, StructureTableLength) == 6, "in memory");
static_assert(offsetof(DMITableEntryPoint, biosStructureTableAddress) == 8, "in memory");
static_assert(offsetof(DMITableEntryPoint, HowManyStructures) == 12, "in memory");

#endif
