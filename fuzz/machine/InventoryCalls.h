// SPDX-License-Identifier: MIT
//
// All that an agent can ask of the firmware's table. The records are as large as Talvane.h tells
// agents to make them.
#ifndef TALVANE_FUZZ_MACHINE_INVENTORYCALLS_H
#define TALVANE_FUZZ_MACHINE_INVENTORYCALLS_H

namespace fuzz {

// The commands of GetInfo that the table answers.
void AskForFirmwareRecords();

// The operations of the class SmBios.
void CallReaderOperations();

}  // namespace fuzz

#endif
