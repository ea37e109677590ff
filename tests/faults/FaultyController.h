// SPDX-License-Identifier: MIT
//
// A server with a controller that has a sensor of each kind, thresholds and an inventory: small, so
// that each of its requests can fail in turn.
#ifndef TALVANE_TESTS_FAULTS_FAULTYCONTROLLER_H
#define TALVANE_TESTS_FAULTS_FAULTYCONTROLLER_H

#include "faults/SweepTest.h"
#include "support/IpmiTest.h"

namespace faults {

class FaultyController : public IpmiTest {
protected:
    FaultyController() {
        Add(Fan("FAN 1", 0x30).Entity(29, 1).Event(10).Limits(100, 0), 70);
        Add(Voltage("3.3V", 0x20).Entity(3, 1).Limits(250, 10), 165);
        Add(Temperature("CPU", 0x10).Entity(3, 1).ThresholdMasks(0x3F, 0x3F), 42);
        bmc.SetThresholds(0x10, {0x3F, {5, 4, 3, 80, 90, 100}});
        bmc.SetChannel(1, {4, 1});
        bmc.SetInventory({1, 0,    1,   2,    3,   0,    0,    0,     // header
                          1, 1,    23,  0xC1, 'C', 0xC1, 'D',  0,     // chassis
                          1, 1,    0,   0,    0,   0,    0xC1, 'M',   // board
                          1, 2,    0,   0xC3, 'A', 'B',  'C',  0x41,  // product
                          5, 0x81, 'x', 0xC2, 'V', '1',  0xC1, 0});
    }
};

}  // namespace faults

#endif
