// SPDX-License-Identifier: MIT
//
// The PCI report: the names, the location and the state of every function of the machine.
#ifndef TALVANE_GETPCIINFO_H
#define TALVANE_GETPCIINFO_H

#include "Export.h"
#include "InformationRecords.h"

// The names of the class codes 0x00 to 0x13. The last one is empty.
extern TALVANE_EXPORT const char MainDev[20][64];

// Fills the record with the functions of buses 0 to 10, in the order of bus, device and function.
// The entries after them stay untouched. A class from 0x14 on leaves `model` as the caller gave it,
// and a sub-class without a name leaves `type`. Without I/O privilege no function is found.
// Returns 0. When three scans, each followed by a pause of 5000 seconds, find more functions than
// the record holds, returns -1 and leaves the record untouched.
TALVANE_EXPORT int GetPciInfo(DeviceInformation* info);

// Copies at most TargetBufLen - 1 characters and no terminator: pass a zero-filled target. A length
// of 0 copies nothing.
TALVANE_EXPORT void CopyString(char* target, const char* source, unsigned int TargetBufLen);

#endif
