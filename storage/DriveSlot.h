// SPDX-License-Identifier: MIT
//
// The four places of a machine where an IDE drive can be.
#ifndef TALVANE_STORAGE_DRIVESLOT_H
#define TALVANE_STORAGE_DRIVESLOT_H

struct DriveSlot {
    int channel;
    const char* device;        // below /dev
    const char* controllerNo;  // as agents know it, misspellings included
};

constexpr DriveSlot kDriveSlots[] = {
    {0, "hda", "Primary Master"},
    {0, "hdb", "Primary Slave"},
    {1, "hdc", "Secondry Master"},
    {1, "hdd", "Secondry Slave"},
};

#endif
