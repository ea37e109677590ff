// SPDX-License-Identifier: MIT
//
// Finds out by the return address whether a call came from a library under observation.
#ifndef TALVANE_SIMULATOR_PROCESS_CALLERS_H
#define TALVANE_SIMULATOR_PROCESS_CALLERS_H

#include <string>
#include <string_view>

namespace sim {

// Observes the modules whose file name begins with `name`, such as "libTalvane.so", including those
// that are loaded later. libTalvane.so is observed from the start.
void ObserveLibrary(const std::string& name);

// The name under which the module at this address is observed; empty when it is not observed.
// Allocates nothing.
std::string_view ObservedCaller(const void* address);

}  // namespace sim

#endif
