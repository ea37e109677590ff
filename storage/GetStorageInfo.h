// SPDX-License-Identifier: MIT
//
// The IDE disks of the machine.
#ifndef TALVANE_STORAGE_GETSTORAGEINFO_H
#define TALVANE_STORAGE_GETSTORAGEINFO_H

#include "../Export.h"
#include "../InformationRecords.h"

// Fills one entry per disk among hda to hdd, in this order; optical drives and the like get none.
// Texts are NUL-terminated. A field for which a file or the drive has no answer stays as the caller
// gave it. The entry after the last disk may have its `type` overwritten. Without IDE devices the
// quantity is 0, and "No ide devices." is printed on standard output.
TALVANE_EXPORT void GetStorageInfo(StorageInformation* info);

#endif
