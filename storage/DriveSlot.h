// SPDX-License-Identifier: MIT
//
// The four places of a machine where an IDE drive can be.
#ifndef TALVANE_STORAGE_DRIVESLOT_H
#define TALVANE_STORAGE_DRIVESLOT_H

namespace talvane {

struct DriveSlot {
    int channel;
    const char* device;        // in /dev
    const char* controllerNo;  // Kept: agents know the misspelled names
};

constexpr DriveSlot kDriveSlots[] = {
    {0, "hda", "Primary Master"},
    {0, "hdb", "Primary Slave"},
    {1, "hdc", "Secondry Master"},
    {1, "hdd", "Secondry Slave"},
};

}  // namespace talvane

#endif
