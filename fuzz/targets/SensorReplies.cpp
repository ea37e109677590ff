// SPDX-License-Identifier: MIT
//
// The exported functions of sensors, thresholds and watchdog, with responses that need not fit the
// requests. Input: responses, each after a byte with its length.

#include "fuzz/machine/Controller.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FedMachine machine;
    machine.bmc = fuzz::ScriptedController(talvane::ByteView(data, size));
    fuzz::CallControllerFunctions();
    return 0;
}
