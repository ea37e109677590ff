// SPDX-License-Identifier: MIT
//
// The IDE disks of the machine.
#ifndef TALVANE_STORAGE_GETSTORAGEINFO_H
#define TALVANE_STORAGE_GETSTORAGEINFO_H

#include "../Export.h"
#include "../InformationRecords.h"

// Fills one entry per disk among hda to hdd, in this order; optical drives and the like have none.
// Texts are terminated. What a file or the drive does not tell stays as the caller gave it; of the
// entry behind the last disk `type` is overwritten. Without IDE devices the quantity is 0 and "No
// ide devices." is printed on standard output.
TALVANE_EXPORT void GetStorageInfo(StorageInformation* info);

#endif
