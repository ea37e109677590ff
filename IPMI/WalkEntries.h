// SPDX-License-Identifier: MIT
//
// The memory of repository walks. A Sensor object points at the entries of one walk; the memory
// before them leads to their count and to the object's other walks. None of them is freed before
// the object is: a call from within a walk's request can start another walk, and any of them can
// end last.
#ifndef TALVANE_IPMI_WALKENTRIES_H
#define TALVANE_IPMI_WALKENTRIES_H

#include "IPMI/SensorRecords.h"

namespace talvane {

class WalkEntries {
public:
    // `entries` are what Allocate has returned, or null for an object without a walk.
    explicit WalkEntries(SensorDescription* entries) : entries_(entries) {}

    // Adds a walk of `count` zeroed entries to the object's walks and returns its entries. Throws
    // what an array of that many entries would throw, and then adds nothing.
    SensorDescription* Allocate(int count);

    // Entry `index` of this walk, counted from 0. Null outside of the walk.
    SensorDescription* At(int index) const;

    // Frees all walks of the object.
    void FreeAll();

private:
    SensorDescription* entries_;
};

}  // namespace talvane

#endif
