// SPDX-License-Identifier: MIT
//
// Tells by return address whether a call came from a library under observation.
#ifndef TALVANE_SIMULATOR_PROCESS_CALLERS_H
#define TALVANE_SIMULATOR_PROCESS_CALLERS_H

#include <string>
#include <string_view>

namespace sim {

// Observes modules whose file name begins with `name`, such as "libTalvane.so", also those that are
// loaded later. libTalvane.so is observed from the start.
void ObserveLibrary(const std::string& name);

// The name under which the module of this address is observed; empty when it is not. Costs no
// allocation.
std::string_view ObservedCaller(const void* address);

}  // namespace sim

#endif
