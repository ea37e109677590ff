// SPDX-License-Identifier: MIT
//
// Ends a program that asked for something that its simulated server does not have.
#ifndef TALVANE_SIMULATOR_MACHINE_VIOLATION_H
#define TALVANE_SIMULATOR_MACHINE_VIOLATION_H

#include <string>

namespace sim {

// From now on the server is called by this name in place of "simulated server". The text is kept as
// it is.
void NameServer(const char* name);

// Writes "simulated server: WHAT" to standard error and aborts.
[[noreturn]] void AbortOnViolation(const std::string& what);

}  // namespace sim

#endif
