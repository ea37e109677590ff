// SPDX-License-Identifier: MIT
//
// The end of a program that asked for what its simulated server does not have.
#ifndef TALVANE_SIMULATOR_MACHINE_VIOLATION_H
#define TALVANE_SIMULATOR_MACHINE_VIOLATION_H

#include <string>

namespace sim {

// Says "simulated server: WHAT" on standard error and aborts.
[[noreturn]] void AbortOnViolation(const std::string& what);

}  // namespace sim

#endif
