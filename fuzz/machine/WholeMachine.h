// SPDX-License-Identifier: MIT
//
// A machine of which every part is made of the input.
#ifndef TALVANE_FUZZ_MACHINE_WHOLEMACHINE_H
#define TALVANE_FUZZ_MACHINE_WHOLEMACHINE_H

#include "fuzz/Input.h"
#include "fuzz/machine/FedMachine.h"

namespace fuzz {

// Takes three parts, each after its length in two bytes: what AddFirmwareTable, the inventory
// device of the BMC, and AddDrives take. Then sensor data records, each after a byte with its
// length, a length of 0, and what answers readings and thresholds. Borrows the input's bytes.
void AddWholeMachine(FedMachine& machine, Input& input);

}  // namespace fuzz

#endif
