// SPDX-License-Identifier: MIT
//
// An SMBIOS or DMI table in the memory of a fed machine.
#ifndef TALVANE_FUZZ_MACHINE_FIRMWARETABLE_H
#define TALVANE_FUZZ_MACHINE_FIRMWARETABLE_H

#include "fuzz/machine/FedMachine.h"

namespace fuzz {

// Puts the first 32 bytes where an entry point is looked for, and all others where that entry point
// says that its table is. Two of its fields are cut, since large ones only take time: the upper
// half of the address, since the library asks for a block as large as it, and a length of more than
// 64 bytes beyond the table. Borrows the bytes.
void AddFirmwareTable(FedMachine& machine, talvane::ByteView bytes);

}  // namespace fuzz

#endif
