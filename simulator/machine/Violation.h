// SPDX-License-Identifier: MIT
//
// Ends a program that asked for something that its simulated server does not have.
#ifndef TALVANE_SIMULATOR_MACHINE_VIOLATION_H
#define TALVANE_SIMULATOR_MACHINE_VIOLATION_H

#include <string>

namespace sim {

// Writes "simulated server: WHAT" to standard error and aborts.
[[noreturn]] void AbortOnViolation(const std::string& what);

}  // namespace sim

#endif
