// SPDX-License-Identifier: MIT
//
// The PCI report: every function of the machine with its names, its location and its state.
#ifndef TALVANE_GETPCIINFO_H
#define TALVANE_GETPCIINFO_H

#include "Export.h"
#include "InformationRecords.h"

// Names of the class codes 0x00 to 0x13; the last is empty.
extern TALVANE_EXPORT const char MainDev[20][64];

// Fills the record with the functions of buses 0 to 10 in the order of bus, device and function;
// entries behind them stay. A class from 0x14 on leaves `model` and a sub-class without a name
// leaves `type` as the caller gave it. Without I/O privilege no function is found.
// Returns 0, or -1 with the record untouched when three scans, each followed by a pause of 5000
// seconds, found more functions than the record holds.
TALVANE_EXPORT int GetPciInfo(DeviceInformation* info);

// Copies at most TargetBufLen - 1 characters and no terminator: pass a zero-filled target. With a
// length of 0 nothing is copied.
TALVANE_EXPORT void CopyString(char* target, const char* source, unsigned int TargetBufLen);

#endif
