// SPDX-License-Identifier: MIT
//
// Which machine there is, and what the library keeps of one in its process.

#include "fuzz/machine/FedMachine.h"

#include <cstdlib>

#include "IPMI/IPMIbase.h"
#include "Talvane.h"
#include "fuzz/machine/OpenFiles.h"
#include "interface/IpmiState.h"

namespace fuzz {
namespace {

// Of the thread: libFuzzer has threads of its own, which go on using the real machine.
thread_local FedMachine* current = nullptr;

}  // namespace

FedMachine::FedMachine() {
    current = this;
    hDevice = -1;
    InitOK = 0;
    talvane::IPMIGetSensorInfoOK = 0;
    talvane::NoEnterIPMI = 0;
    talvane::NoEnterWatchDogTimer = 0;
}

FedMachine::~FedMachine() {
    (void)release();                            // result not used: it is always 0
    if (OpenFiles::Count() != 0) std::abort();  // a finding: the library has left a file open
    current = nullptr;
}

FedMachine* FedMachine::Current() {
    return current;
}

}  // namespace fuzz
