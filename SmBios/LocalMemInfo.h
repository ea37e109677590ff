// SPDX-License-Identifier: MIT
//
// The summary of the installed memory that SmBios::GetMemoryInformation fills.
#ifndef TALVANE_SMBIOS_LOCALMEMINFO_H
#define TALVANE_SMBIOS_LOCALMEMINFO_H

// One populated memory module or device. Texts are NUL-terminated.
struct BankInfo {
    char size[16];
    char speed[16];
    char type[24];
    char TypeDetail[32];
    char manufacturer[32];
    int SlotNumber;  // derived from the locator text; 0 when the text names none
};
static_assert(sizeof(BankInfo) == 124, "BankInfo has the layout of BANK");

struct LocalMemInfo {
    int TotalSize;  // megabytes, modulo 65536
    int quantity;   // entries of `bank` that are filled
    BankInfo bank[16];
};
static_assert(sizeof(LocalMemInfo) == 1992, "two counters and sixteen banks");

#endif
