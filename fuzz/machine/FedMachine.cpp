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

// Bits 8 to 23 of an address number the function, bits 2 to 7 its registers (PCI 3.0, 3.2.2.3.2).
std::uint32_t FedMachine::Configuration(std::uint32_t address) const {
    constexpr std::size_t kHeaderSize = 64;
    constexpr std::uint32_t kNoAnswer = 0xFFFFFFFF;
    const std::size_t at = (address >> 8 & 0xFFFF) * kHeaderSize + (address & 0xFC);
    return at < pci.size() ? talvane::Le32(pci, at) : kNoAnswer;
}

FedMachine* FedMachine::Current() {
    return current;
}

}  // namespace fuzz
