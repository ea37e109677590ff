// SPDX-License-Identifier: MIT
//
// A BMC in a fed machine, and all that an agent can ask of it.
#ifndef TALVANE_FUZZ_MACHINE_CONTROLLER_H
#define TALVANE_FUZZ_MACHINE_CONTROLLER_H

#include <vector>

#include "fuzz/Input.h"
#include "fuzz/machine/FedMachine.h"

namespace fuzz {

// What a BMC keeps. All views are borrowed.
struct ControllerParts {
    std::vector<talvane::ByteView> records;  // of the sensor repository, one after the other
    talvane::ByteView inventory;             // the image of FRU device 0
    // Answers about sensors: those of sensor n start at byte n, and around the end again.
    talvane::ByteView sensors;
};

// Takes records, each after a byte with its length, up to a length of 0.
std::vector<talvane::ByteView> TakeRecords(Input& input);

// A BMC that answers as the standard says, with the parts as its contents.
std::function<Bytes(const BmcRequest&)> ControllerOf(ControllerParts parts);

// A BMC whose responses are taken from the input one after the other, whatever is asked: each
// begins with its length. The repository states at most 64 records, so that a walk ends soon.
std::function<Bytes(const BmcRequest&)> ScriptedController(talvane::ByteView responses);

// The sensor operations of the class IPMIsupport, and those of the inventory.
void CallSensorOperations();
void CallInventoryOperations();

// The exported functions that ask the BMC.
void CallControllerFunctions();

}  // namespace fuzz

#endif
