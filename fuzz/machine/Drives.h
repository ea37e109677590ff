// SPDX-License-Identifier: MIT
//
// IDE drives in a fed machine.
#ifndef TALVANE_FUZZ_MACHINE_DRIVES_H
#define TALVANE_FUZZ_MACHINE_DRIVES_H

#include "fuzz/Input.h"
#include "fuzz/machine/FedMachine.h"

namespace fuzz {

// Takes, for each of the four drives: a byte that says whether it is there, and then the texts of
// its media, model and capacity, each up to a zero byte, and its counted identity block. The 64
// bytes of the partition table follow, and the extended records: the cylinder in two bytes, and two
// entries of 16. All drives hold the same. Borrows the input's bytes.
void AddDrives(FedMachine& machine, Input& input);

}  // namespace fuzz

#endif
