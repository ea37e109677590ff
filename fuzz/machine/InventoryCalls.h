// SPDX-License-Identifier: MIT
//
// All that an agent can ask of the firmware's table. The records are as large as Talvane.h tells
// agents to make them.
#ifndef TALVANE_FUZZ_MACHINE_INVENTORYCALLS_H
#define TALVANE_FUZZ_MACHINE_INVENTORYCALLS_H

namespace fuzz {

// One of 14 questions; numbers from 14 on ask the same again. 0 to 9 are the commands of GetInfo
// that the table answers, 10 to 13 groups of operations of the class SmBios: numbers of elements,
// texts with a size, texts without one, all others.
void AskFirmware(unsigned question);

}  // namespace fuzz

#endif
