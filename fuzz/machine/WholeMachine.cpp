// SPDX-License-Identifier: MIT
//
// One part after the other.

#include "fuzz/machine/WholeMachine.h"

#include "fuzz/machine/Controller.h"
#include "fuzz/machine/Drives.h"
#include "fuzz/machine/FirmwareTable.h"

namespace fuzz {

void AddWholeMachine(FedMachine& machine, Input& input) {
    AddFirmwareTable(machine, input.Take(input.TakeLe16()));
    ControllerParts parts;
    parts.inventory = input.Take(input.TakeLe16());
    const talvane::ByteView drives = input.Take(input.TakeLe16());
    Input ofDrives(drives.data(), drives.size());
    AddDrives(machine, ofDrives);
    // A folder without a drive, so that the library does not print that there is none.
    machine.files["/proc/ide/drivers"];
    parts.records = TakeRecords(input);
    parts.sensors = input.Rest();
    machine.bmc = ControllerOf(parts);
}

}  // namespace fuzz
