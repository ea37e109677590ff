// SPDX-License-Identifier: MIT
//
// The walk over the repository, the tables and every getter. Input: sensor data records, each after
// a byte with its length; a length of 0 ends them. What is left answers readings and thresholds.

#include "fuzz/machine/Controller.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FedMachine machine;
    fuzz::Input input(data, size);
    fuzz::ControllerParts parts;
    parts.records = fuzz::TakeRecords(input);
    parts.sensors = input.Rest();
    machine.bmc = fuzz::ControllerOf(parts);
    fuzz::CallSensorOperations();
    return 0;
}
