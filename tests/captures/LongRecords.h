// SPDX-License-Identifier: MIT
//
// Result records with room for as many elements as a machine can state, laid out like those of the
// interface.
#ifndef TALVANE_TESTS_LONGRECORDS_H
#define TALVANE_TESTS_LONGRECORDS_H

#include "InformationRecords.h"

namespace captures {

struct LongProcessors {
    static constexpr int kRoom = 16;
    int quantity;
    CPU cpu[kRoom];
};

struct LongPorts {
    static constexpr int kRoom = 128;
    int quantity;
    PORT port[kRoom];
};

struct LongPower {
    static constexpr int kRoom = 32;
    int TotalNumber;
    int RedundantNumber;
    SYS_POWER PowerSupply[kRoom];
};

struct LongFans {
    static constexpr int kRoom = 63;
    int quantity;
    FAN_DEVICE fan[kRoom];
};

}  // namespace captures

#endif
